#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "guard/Guard.h"
#include "guard/SharedStatus.h"

namespace fxhost {

// Compares the time and memory of one guarded child with the limits, and prints what went wrong. It touches
// no process itself: the caller measures the child and carries out the actions.
class Watchdog {
public:
    // limits.memoryBytes is the absolute ceiling here. `status` must outlive the watchdog.
    Watchdog(SharedStatus& status, const GuardLimits& limits, const std::string& effect);

    enum class Action { None, Stop, Kill };
    // Call it every few milliseconds, with the child's private memory in bytes if known. It prints the
    // message about an exceeded limit. Stop is returned at most once; Kill when the child has had its chance
    // to save the rendered frames.
    Action check(std::optional<std::uint64_t> dataBytes);

    // Exit status for a child that ended with this wait status; prints the message about a crash.
    // `stopSignal`: the signal with which the user asked for a stop, or 0.
    int exitStatusFor(int waitStatus, int stopSignal);

private:
    enum class Limit { None, Time, Memory };
    using Clock = std::chrono::steady_clock;

    Action actionAfterExcess(double elapsed);
    void countTime(double elapsed);
    Limit exceededLimit(std::optional<std::uint64_t> dataBytes) const;
    void reportExcess() const;
    void report(const std::string& problem) const;
    void reportWritten() const;
    std::string position() const;

    SharedStatus& m_Status;
    const GuardLimits m_Limits;
    const std::string m_Effect;
    Limit m_Exceeded = Limit::None;
    std::uint64_t m_Span = 0; // number of the span that m_SpanSeconds belongs to
    double m_SpanSeconds = 0;
    double m_DrainSeconds = 0; // since Action::Stop
    Clock::time_point m_Last = Clock::now();
};

} // namespace fxhost
