#pragma once

#include <array>
#include <chrono>
#include <vector>

namespace fxhost {

// The steps of one frame, in their order.
enum class FrameStep { PreRender, Upload, Script, Draw, ReadBack, CopyOut, Done };
constexpr std::size_t FrameStepCount = 6; // without Done

// "preRender", "upload", "script", "draw", "read-back", "copy-out".
const char* StepName(FrameStep step);

struct Spread {
    double median = 0, low = 0, high = 0; // low and high hold all but a tenth of the values at either end
};
Spread SpreadOf(std::vector<double> values);

// Takes the time of every step of every frame. GL works behind the caller's back, so it is waited for where a
// step ends; "draw" is just what the GPU still does when the script has returned.
class FrameStepTimer {
public:
    // To be called as each step begins, with the engine's GL context current.
    void begin(FrameStep step);

    // Milliseconds of one step, frame by frame, and of whole frames.
    const std::vector<double>& times(FrameStep step) const { return m_Times[static_cast<std::size_t>(step)]; }
    const std::vector<double>& frames() const { return m_Frames; }
    void forget();

private:
    using Clock = std::chrono::steady_clock;

    FrameStep m_Step = FrameStep::Done;
    Clock::time_point m_Since, m_FrameSince;
    std::array<std::vector<double>, FrameStepCount> m_Times;
    std::vector<double> m_Frames;
};

} // namespace fxhost
