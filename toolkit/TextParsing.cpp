#include "toolkit/TextParsing.h"

#include <algorithm>
#include <cctype>
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

bool IsWordPart(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// Number of edits between two words: optimal string alignment distance.
std::size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    const auto same = [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    };
    for (std::size_t i = 0; i <= a.size(); ++i)
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            const std::size_t change = same(a[i - 1], b[j - 1]) ? 0 : 1;
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && same(a[i - 1], b[j - 2]) && same(a[i - 2], b[j - 1]))
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    return cost[a.size()][b.size()];
}

} // namespace

int LineAt(const std::string& text, std::size_t position) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(position, text.size()));
    return static_cast<int>(std::count(text.begin(), end, '\n')) + 1;
}

bool ContainsWord(const std::string& text, const std::string& word) {
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        const auto end = at + word.size();
        if ((at == 0 || !IsWordPart(text[at - 1])) && (end == text.size() || !IsWordPart(text[end])))
            return true;
    }
    return false;
}

std::string ClosestWord(const std::string& word, const std::vector<std::string>& words) {
    std::string closest;
    std::size_t best = word.size() / 3 + 1;
    for (const std::string& candidate : words)
        if (const std::size_t distance = EditDistance(word, candidate); distance < best) {
            best = distance;
            closest = candidate;
        }
    return closest;
}

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
