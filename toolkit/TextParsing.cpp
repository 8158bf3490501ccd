#include "toolkit/TextParsing.h"

#include <charconv>
#include <cmath>
#include <fast_float/fast_float.h>

#include "pictures/Picture.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// An integer from 1 to MaxExtent; 0 for any other text.
unsigned ParseExtent(const std::string& text) {
    unsigned extent = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, extent);
    return error == std::errc() && stop == end && extent <= MaxExtent ? extent : 0;
}

} // namespace

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text)
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    return parts;
}

std::optional<double> ParseNumber(const std::string& text) {
    std::string digits = Trimmed(text);
    if (digits.starts_with('+'))
        digits.erase(0, 1);
    double number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = fast_float::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end || !std::isfinite(number))
        return std::nullopt;
    return number;
}

PixelSize ParsePixelSize(const std::string& option, const std::string& text) {
    const auto sides = Split(text, 'x');
    if (sides.size() == 2) {
        const PixelSize size{ParseExtent(sides[0]), ParseExtent(sides[1])};
        if (size.width > 0 && size.height > 0)
            return size;
    }
    throw WrongUse(option + " " + text + ": WIDTHxHEIGHT expected, such as 1920x1080, each from 1 to " +
                   std::to_string(MaxExtent));
}

} // namespace fxhost
