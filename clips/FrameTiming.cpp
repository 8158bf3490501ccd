#include "clips/FrameTiming.h"

#include <algorithm>
#include <cmath>

namespace fxhost {

namespace {

constexpr double s_Tolerance = 0.25;       // of a frame
constexpr double s_MaxCandidateRate = 120; // of a candidate; higher ones are time bases, not frame rates

bool HasRate(const std::vector<double>& times, const FrameRate& rate) {
    for (std::size_t i = 0; i < times.size(); ++i)
        if (std::abs((times[i] - times.front()) * rate.perSecond() - static_cast<double>(i)) > s_Tolerance)
            return false;
    return true;
}

double MedianDistance(const std::vector<double>& times) {
    std::vector<double> distances;
    for (std::size_t i = 1; i < times.size(); ++i)
        distances.push_back(times[i] - times[i - 1]);
    const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
    std::nth_element(distances.begin(), middle, distances.end());
    return *middle;
}

} // namespace

std::optional<FrameRate> ConstantRate(const std::vector<double>& times,
                                      const std::vector<FrameRate>& candidates) {
    for (const FrameRate& rate : candidates)
        if (HasRate(times, rate))
            return rate;
    return std::nullopt;
}

FrameRate ResamplingRate(const std::vector<double>& times, const std::vector<FrameRate>& candidates) {
    const double usual = 1 / std::max(MedianDistance(times), 1 / s_MaxCandidateRate);
    for (const FrameRate& rate : candidates)
        if (rate.perSecond() <= s_MaxCandidateRate && rate.perSecond() > usual * 0.99)
            return rate;
    return {std::max(std::lround(usual), 1L), 1};
}

std::vector<long> ResampledFrames(const std::vector<double>& times, const FrameRate& rate) {
    std::vector<long> frames;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const double place = std::round((times[i] - times.front()) * rate.perSecond());
        // The previous frame fills the places before this one. Of frames that share a place, the last one
        // counts.
        frames.resize(static_cast<std::size_t>(place) + 1, static_cast<long>(i));
        frames.back() = static_cast<long>(i) + 1;
    }
    return frames;
}

} // namespace fxhost
