#include "drivers/FrameSteps.h"

#include <algorithm>

#include "platform/GL.h"

namespace fxhost {

const char* StepName(FrameStep step) {
    constexpr const char* names[] = {"preRender", "upload",   "script", "draw",
                                     "read-back", "copy-out", "done"};
    return names[static_cast<std::size_t>(step)];
}

Spread SpreadOf(std::vector<double> values) {
    if (values.empty())
        return {};
    std::sort(values.begin(), values.end());
    const std::size_t last = values.size() - 1, tenth = last / 10;
    const double median = (values[last / 2] + values[(last + 1) / 2]) / 2;
    return {median, values[tenth], values[last - tenth]};
}

void FrameStepTimer::begin(FrameStep step) {
    if (step != FrameStep::Draw) // which is the time that this waits
        glFinish();
    const auto now = Clock::now();
    const auto since = [&](Clock::time_point start) {
        return std::chrono::duration<double, std::milli>(now - start).count();
    };
    if (step == FrameStep::PreRender)
        m_FrameSince = now;
    else if (m_Step != FrameStep::Done)
        m_Times[static_cast<std::size_t>(m_Step)].push_back(since(m_Since));
    if (step == FrameStep::Done)
        m_Frames.push_back(since(m_FrameSince));
    m_Step = step;
    m_Since = now;
}

void FrameStepTimer::forget() {
    for (auto& times : m_Times)
        times.clear();
    m_Frames.clear();
}

} // namespace fxhost
