#include "guard/StopRequest.h"

#include <csignal>
#include <utility>

#include "guard/SharedStatus.h"

namespace fxhost {

namespace {

std::atomic<int> s_Stop{0}; // number of the signal
struct sigaction s_PreviousTerm, s_PreviousInt, s_PreviousHangUp, s_PreviousPipe;

void OnStop(int number) {
    s_Stop = number;
}

} // namespace

StopScope::StopScope(bool canDrain) {
    s_Stop = 0;
    struct sigaction stop {};
    stop.sa_handler = OnStop;
    stop.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &stop, &s_PreviousTerm);
    // A guarded child ignores these, because its parent passes them on as SIGTERM.
    for (const auto& [number, previous] :
         {std::pair(SIGINT, &s_PreviousInt), std::pair(SIGHUP, &s_PreviousHangUp)}) {
        sigaction(number, nullptr, previous);
        if (previous->sa_handler != SIG_IGN)
            sigaction(number, &stop, nullptr);
    }
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &s_PreviousPipe);
    CurrentStatus().canDrain = canDrain;
}

StopScope::~StopScope() {
    CurrentStatus().canDrain = false;
    sigaction(SIGTERM, &s_PreviousTerm, nullptr);
    sigaction(SIGINT, &s_PreviousInt, nullptr);
    sigaction(SIGHUP, &s_PreviousHangUp, nullptr);
    sigaction(SIGPIPE, &s_PreviousPipe, nullptr);
}

bool StopRequested() {
    return s_Stop != 0;
}

int StopStatus() {
    return 128 + s_Stop;
}

bool AbandonRequested() {
    return CurrentStatus().abandon;
}

void MarkDrained() {
    CurrentStatus().isDrained = true;
}

} // namespace fxhost
