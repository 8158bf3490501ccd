#include "clips/NumberText.h"

#include <charconv>

namespace fxhost {

namespace {

constexpr long s_MaxNumber = 99999999;

} // namespace

std::optional<long> WholeNumber(std::string_view text, long minimum) {
    long number = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    if (error != std::errc() || end != last || number < minimum || number > s_MaxNumber)
        return std::nullopt;
    return number;
}

Halves SplitAt(std::string_view text, char separator) {
    const auto at = text.find(separator);
    if (at == std::string_view::npos)
        return {text, std::nullopt};
    return {text.substr(0, at), text.substr(at + 1)};
}

} // namespace fxhost
