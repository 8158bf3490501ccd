#pragma once

#include <array>
#include <chrono>
#include <vector>

#include "guard/Stage.h"

namespace fxhost {

// The stages that are measured, in the order in which a frame passes them.
constexpr std::array<Stage, 6> TimedStages = {Stage::PreRender, Stage::Upload,   Stage::Script,
                                              Stage::Draw,      Stage::ReadBack, Stage::CopyOut};

// Column of a measured stage in a report: "preRender", "upload", "script", "draw", "read-back", "copy-out".
const char* TimedStageName(Stage stage);

struct Spread {
    double median = 0, low = 0, high = 0; // low and high hold all but a tenth of the values at either end
};
Spread SpreadOf(std::vector<double> values);

// Measures every stage of every frame. GL works asynchronously, so the timer waits for it at the end of each
// stage; Stage::Draw is what the GPU still does when the script has returned.
class StageTimer {
public:
    // Call it as each stage begins, and with Stage::Idle after the last one, with the engine's GL context
    // current.
    void begin(Stage stage);

    // Milliseconds of one stage in each frame, and of whole frames.
    const std::vector<double>& times(Stage stage) const;
    const std::vector<double>& frames() const { return m_Frames; }
    void forget();

private:
    using Clock = std::chrono::steady_clock;

    Stage m_Stage = Stage::Idle;
    Clock::time_point m_Since, m_FrameSince;
    std::array<std::vector<double>, TimedStages.size()> m_Times;
    std::vector<double> m_Frames;
};

} // namespace fxhost
