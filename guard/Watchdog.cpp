#include "guard/Watchdog.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sys/wait.h>

#include "toolkit/Errors.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

constexpr double s_MaxDrainSeconds = 20; // for writing the frames that are already rendered
// A longer interval between two checks means that this process was suspended, and the child probably too.
constexpr double s_MaxStepSeconds = 0.25;
constexpr const char* s_MemoryMessage = "the work needs more memory than it may take (--memory-limit)";

std::string Text(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", number);
    return text;
}

} // namespace

Watchdog::Watchdog(SharedStatus& status, const GuardLimits& limits, const std::string& effect)
    : m_Status(status), m_Limits(limits), m_Effect(effect) {}

Watchdog::Action Watchdog::check(std::optional<std::uint64_t> dataBytes) {
    const auto now = Clock::now();
    const double elapsed = std::min(std::chrono::duration<double>(now - m_Last).count(), s_MaxStepSeconds);
    m_Last = now;
    if (m_Exceeded != Limit::None)
        return actionAfterExcess(elapsed);
    countTime(elapsed);
    m_Exceeded = exceededLimit(dataBytes);
    if (m_Exceeded == Limit::None)
        return Action::None;
    reportExcess();
    if (!m_Status.canDrain)
        return Action::Kill;
    m_Status.abandon = true;
    return Action::Stop;
}

Watchdog::Action Watchdog::actionAfterExcess(double elapsed) {
    m_DrainSeconds += elapsed;
    const bool isDraining = m_Status.canDrain && !m_Status.isDrained && m_DrainSeconds < s_MaxDrainSeconds;
    return isDraining ? Action::None : Action::Kill;
}

void Watchdog::countTime(double elapsed) {
    if (m_Span != m_Status.spans || m_Status.stage == Stage::Idle)
        m_SpanSeconds = 0;
    else
        m_SpanSeconds += elapsed;
    m_Span = m_Status.spans;
}

Watchdog::Limit Watchdog::exceededLimit(std::optional<std::uint64_t> dataBytes) const {
    if (m_Status.outOfMemory || (dataBytes && *dataBytes > m_Limits.memoryBytes))
        return Limit::Memory;
    if (m_Limits.frameSeconds > 0 && m_SpanSeconds > m_Limits.frameSeconds)
        return Limit::Time;
    return Limit::None;
}

void Watchdog::reportExcess() const {
    if (m_Exceeded == Limit::Time)
        report("no end after " + Text(m_Limits.frameSeconds) + " s (--frame-timeout)");
    else
        report(s_MemoryMessage);
}

int Watchdog::exitStatusFor(int waitStatus, int stopSignal) {
    if (m_Exceeded != Limit::None) {
        reportWritten();
        return ExitRanAway;
    }
    if (WIFEXITED(waitStatus)) {
        if (stopSignal && IsStopStatus(WEXITSTATUS(waitStatus))) // The child got another signal.
            return 128 + stopSignal;
        if (!m_Status.outOfMemory || WEXITSTATUS(waitStatus) == ExitOk)
            return WEXITSTATUS(waitStatus);
        report(s_MemoryMessage);
    } else if (!stopSignal) {
        const int signal = WTERMSIG(waitStatus);
        report("crashed with signal " + std::to_string(signal) + " (" + strsignal(signal) + ")");
    }
    reportWritten();
    return stopSignal && !WIFEXITED(waitStatus) ? 128 + stopSignal : ExitRanAway;
}

std::string Watchdog::position() const {
    const Stage stage = m_Status.stage;
    const long frame = m_Status.frame;
    const bool inFrame = frame >= 0 && stage != Stage::Setup;
    return (inFrame ? "frame " + std::to_string(frame) + ", " : "") + StageName(stage);
}

void Watchdog::report(const std::string& problem) const {
    if (m_Limits.isSilent)
        return;
    PrintMessage(MessageKind::Error, m_Effect + ": " + position() + ": " + problem, m_Status.frame);
}

void Watchdog::reportWritten() const {
    if (m_Status.total > 0)
        PrintMessage(MessageKind::Note, std::to_string(m_Status.written) + " of " +
                                            std::to_string(m_Status.total) + " frames are written" +
                                            (m_Status.resumable && m_Status.written > 0
                                                 ? "; the same command with --resume continues after them"
                                                 : ""));
}

} // namespace fxhost
