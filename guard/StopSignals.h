#pragma once

#include <csignal>

namespace fxhost {

// Counts SIGINT, SIGTERM and SIGHUP instead of letting them end the process. One object at a time.
class StopSignals {
public:
    StopSignals();
    ~StopSignals() { restore(); }
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // Restores the handlers that were installed before.
    void restore();
    // Signals received so far.
    int count() const;
    // The number of the first one; 0 when there is none.
    int first() const;

private:
    static constexpr int s_Counted[] = {SIGINT, SIGTERM, SIGHUP};
    struct sigaction m_Previous[3];
};

} // namespace fxhost
