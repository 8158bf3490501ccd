#include "guard/Watch.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sys/wait.h>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

constexpr double s_GraceSeconds = 20;  // for saving what is rendered
constexpr double s_LongestStep = 0.25; // more than that between two looks and this process slept as well

std::string Text(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", number);
    return text;
}

} // namespace

Watch::Watch(Board& board, const GuardLimits& limits, const std::string& effect)
    : m_Board(board), m_Limits(limits), m_Effect(effect) {}

Watch::Order Watch::look(std::optional<std::uint64_t> dataBytes) {
    const auto now = Clock::now();
    const double step = std::min(std::chrono::duration<double>(now - m_Last).count(), s_LongestStep);
    m_Last = now;
    if (m_Breach != Breach::None) {
        m_Grace += step;
        const bool mayStillSave = m_Board.canDrain && !m_Board.isDrained && m_Grace < s_GraceSeconds;
        return mayStillSave ? Order::None : Order::Kill;
    }
    if (m_Span != m_Board.spans || m_Board.stage == Stage::Idle)
        m_Spent = 0;
    else
        m_Spent += step;
    m_Span = m_Board.spans;

    m_Breach = breach(dataBytes);
    if (m_Breach == Breach::None)
        return Order::None;
    if (m_Breach == Breach::Time)
        say("no end after " + Text(m_Limits.frameSeconds) + " s (--frame-timeout)");
    else
        say("the work needs more memory than it may take (--memory-limit)");
    if (!m_Board.canDrain)
        return Order::Kill;
    m_Board.abandon = true;
    return Order::Stop;
}

Watch::Breach Watch::breach(std::optional<std::uint64_t> dataBytes) {
    if (m_Board.outOfMemory || (dataBytes && *dataBytes > m_Limits.memoryBytes))
        return Breach::Memory;
    if (m_Limits.frameSeconds > 0 && m_Spent > m_Limits.frameSeconds)
        return Breach::Time;
    return Breach::None;
}

int Watch::verdict(int waitStatus, bool stopped) {
    if (m_Breach != Breach::None) {
        sayWritten();
        return ExitRanAway;
    }
    if (WIFEXITED(waitStatus)) {
        if (!m_Board.outOfMemory || WEXITSTATUS(waitStatus) == ExitOk)
            return WEXITSTATUS(waitStatus);
        say("the work needs more memory than it may take (--memory-limit)");
    } else if (stopped) {
        sayWritten();
        return ExitStopped;
    } else {
        const int signal = WTERMSIG(waitStatus);
        say("crashed with signal " + std::to_string(signal) + " (" + strsignal(signal) + ")");
    }
    sayWritten();
    return ExitRanAway;
}

std::string Watch::where() const {
    const Stage stage = m_Board.stage;
    const long frame = m_Board.frame;
    const bool inFrame = frame >= 0 && stage != Stage::Setup;
    return (inFrame ? "frame " + std::to_string(frame) + ", " : "") + StageName(stage);
}

void Watch::say(const std::string& what) const {
    std::fprintf(stderr, "fxhost: %s: %s: %s\n", m_Effect.c_str(), where().c_str(), what.c_str());
}

void Watch::sayWritten() const {
    if (m_Board.total > 0)
        std::fprintf(stderr, "fxhost: %ld of %ld frames are written%s\n", m_Board.written.load(),
                     m_Board.total.load(), m_Board.resumable ? "; --resume goes on after them" : "");
}

} // namespace fxhost
