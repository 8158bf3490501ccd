#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "guard/Board.h"
#include "guard/Guard.h"

namespace fxhost {

// The parent's view of one guarded child: measures its time and memory against the limits and puts what
// happened into words. Knows processes only by what it is told.
class Watch {
public:
    // limits.memoryBytes is the absolute ceiling here. The board must outlive the watch.
    Watch(Board& board, const GuardLimits& limits, const std::string& effect);

    enum class Order { None, Stop, Kill };
    // To be called every few milliseconds, with the child's private memory if known. Stop comes once, after
    // the message about the limit; Kill when the child had its chance to save what it has rendered.
    Order look(std::optional<std::uint64_t> dataBytes);

    // The exit status for a child that ended with this wait status; prints what a crash needs said.
    int verdict(int waitStatus, bool stopped);

private:
    enum class Breach { None, Time, Memory };
    using Clock = std::chrono::steady_clock;

    Breach breach(std::optional<std::uint64_t> dataBytes);
    void say(const std::string& what) const;
    void sayWritten() const;
    std::string where() const;

    Board& m_Board;
    const GuardLimits m_Limits;
    const std::string m_Effect;
    Breach m_Breach = Breach::None;
    std::uint64_t m_Span = 0;
    double m_Spent = 0; // seconds of the span
    double m_Grace = 0; // seconds since Stop
    Clock::time_point m_Last = Clock::now();
};

} // namespace fxhost
