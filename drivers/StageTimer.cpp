#include "drivers/StageTimer.h"

#include <algorithm>

#include "platform/GL.h"

namespace fxhost {

namespace {

// Index in TimedStages, whose stages follow one another in the enumeration.
std::size_t IndexOf(Stage stage) {
    return static_cast<std::size_t>(stage) - static_cast<std::size_t>(TimedStages.front());
}

} // namespace

const char* TimedStageName(Stage stage) {
    constexpr const char* names[] = {"preRender", "upload", "script", "draw", "read-back", "copy-out"};
    return names[IndexOf(stage)];
}

Spread SpreadOf(std::vector<double> values) {
    if (values.empty())
        return {};
    std::sort(values.begin(), values.end());
    const std::size_t last = values.size() - 1, tenth = last / 10;
    const double median = (values[last / 2] + values[(last + 1) / 2]) / 2;
    return {median, values[tenth], values[last - tenth]};
}

const std::vector<double>& StageTimer::times(Stage stage) const {
    return m_Times[IndexOf(stage)];
}

void StageTimer::begin(Stage stage) {
    if (stage != Stage::Draw) // This wait is what Stage::Draw measures.
        glFinish();
    const auto now = Clock::now();
    const auto since = [&](Clock::time_point start) {
        return std::chrono::duration<double, std::milli>(now - start).count();
    };
    if (stage == Stage::PreRender)
        m_FrameSince = now;
    else if (m_Stage != Stage::Idle)
        m_Times[IndexOf(m_Stage)].push_back(since(m_Since));
    if (stage == Stage::Idle)
        m_Frames.push_back(since(m_FrameSince));
    m_Stage = stage;
    m_Since = now;
}

void StageTimer::forget() {
    for (auto& times : m_Times)
        times.clear();
    m_Frames.clear();
}

} // namespace fxhost
