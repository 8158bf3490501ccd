#include "clips/FrameList.h"

#include <charconv>
#include <cmath>
#include <numeric>
#include <optional>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

constexpr long s_LargestNumber = 99999999;

std::optional<long> WholeNumber(std::string_view text, long least) {
    long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < least ||
        number > s_LargestNumber)
        return std::nullopt;
    return number;
}

struct Halves {
    std::string_view left;
    std::optional<std::string_view> right; // without the separator: nothing
};

Halves Halve(std::string_view text, char separator) {
    const auto at = text.find(separator);
    if (at == std::string_view::npos)
        return {text, std::nullopt};
    return {text.substr(0, at), text.substr(at + 1)};
}

FrameRate Reduced(long frames, long seconds) {
    const long divisor = std::gcd(frames, seconds);
    return {frames / divisor, seconds / divisor};
}

// The exact rate for a decimal one: n * 1000 / 1001 where that is what its two or three digits stand for.
std::optional<FrameRate> FromDecimal(double rate) {
    if (!(rate >= 0.001) || rate > 1000)
        return std::nullopt;
    const double whole = std::round(rate * 1.001);
    if (rate != std::round(rate) && std::abs(whole * 1000 / 1001 - rate) < 0.005)
        return Reduced(static_cast<long>(whole) * 1000, 1001);
    return Reduced(std::lround(rate * 1000), 1000);
}

} // namespace

FrameRange FrameRange::Parse(const std::string& text) {
    const Halves step = Halve(text, 'x'), ends = Halve(step.left, '-');
    const auto first = WholeNumber(ends.left, 0), last = WholeNumber(ends.right.value_or(ends.left), 0),
               by = WholeNumber(step.right.value_or("1"), 1);
    if (!first || !last || !by || *last < *first)
        throw WrongUse("--frames " + text +
                       ": FIRST-LAST, FIRST-LASTxSTEP or one number expected, such as 1-240 or 1-240x2");
    return {*first, *last, *by};
}

std::string FrameRange::text() const {
    std::string range = std::to_string(first);
    if (last != first)
        range += "-" + std::to_string(last);
    return step == 1 ? range : range + "x" + std::to_string(step);
}

Shard Shard::Parse(const std::string& text) {
    const Halves halves = Halve(text, '/');
    const auto index = WholeNumber(halves.left, 1), count = WholeNumber(halves.right.value_or(""), 1);
    if (!index || !count || *index > *count)
        throw WrongUse("--shard " + text + ": K/N with K from 1 to N expected, such as 3/8");
    return {static_cast<std::size_t>(*index), static_cast<std::size_t>(*count)};
}

FrameRate FrameRate::Parse(const std::string& text) {
    const Halves halves = Halve(text, '/');
    std::optional<FrameRate> rate;
    if (halves.right) {
        const auto frames = WholeNumber(halves.left, 1), seconds = WholeNumber(*halves.right, 1);
        if (frames && seconds)
            rate = Reduced(*frames, *seconds);
    } else {
        double number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error == std::errc() && end == text.data() + text.size())
            rate = FromDecimal(number);
    }
    if (!rate || rate->perSecond() > 1000)
        throw WrongUse("--fps " + text +
                       ": frames a second expected, up to 1000, such as 25, 29.97 or 30000/1001");
    return *rate;
}

std::string FrameRate::text() const {
    return std::to_string(frames) + (seconds == 1 ? "" : "/" + std::to_string(seconds));
}

} // namespace fxhost
