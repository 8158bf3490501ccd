#include "clips/FrameRate.h"

#include <cmath>
#include <fast_float/fast_float.h>
#include <numeric>
#include <optional>

#include "clips/NumberText.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

constexpr double s_MinRate = 0.001, s_MaxRate = 1000; // frames per second

FrameRate Reduced(long frames, long seconds) {
    const long divisor = std::gcd(frames, seconds);
    return {frames / divisor, seconds / divisor};
}

// Gives n * 1000 / 1001 when the two or three decimals are a rounding of that.
std::optional<FrameRate> FromDecimal(double rate) {
    if (!(rate >= s_MinRate) || rate > s_MaxRate)
        return std::nullopt;
    const double whole = std::round(rate * 1.001);
    if (rate != std::round(rate) && std::abs(whole * 1000 / 1001 - rate) < 0.005)
        return Reduced(static_cast<long>(whole) * 1000, 1001);
    return Reduced(std::lround(rate * 1000), 1000);
}

std::optional<FrameRate> FromText(const std::string& text) {
    const Halves halves = SplitAt(text, '/');
    if (halves.right) {
        const auto frames = WholeNumber(halves.left, 1), seconds = WholeNumber(*halves.right, 1);
        return frames && seconds ? std::optional(Reduced(*frames, *seconds)) : std::nullopt;
    }
    double number = 0;
    const auto [end, error] = fast_float::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber ? FromDecimal(number) : std::nullopt;
}

} // namespace

FrameRate FrameRate::Parse(const std::string& text) {
    const auto rate = FromText(text);
    if (!rate || rate->perSecond() > s_MaxRate)
        throw WrongUse("--fps " + text +
                       ": expected frames per second, up to 1000, such as 25, 29.97 or 30000/1001");
    return *rate;
}

std::string FrameRate::text() const {
    return std::to_string(frames) + (seconds == 1 ? "" : "/" + std::to_string(seconds));
}

} // namespace fxhost
