#include "guard/StopRequest.h"

#include <csignal>

#include "guard/SharedStatus.h"

namespace fxhost {

namespace {

std::atomic<bool> s_Stop{false};
struct sigaction s_PreviousTerm, s_PreviousInt, s_PreviousPipe;

void OnStop(int) {
    s_Stop = true;
}

} // namespace

StopScope::StopScope(bool canDrain) {
    s_Stop = false;
    struct sigaction stop {};
    stop.sa_handler = OnStop;
    stop.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &stop, &s_PreviousTerm);
    // A guarded child ignores SIGINT, because its parent passes it on as SIGTERM.
    sigaction(SIGINT, nullptr, &s_PreviousInt);
    if (s_PreviousInt.sa_handler != SIG_IGN)
        sigaction(SIGINT, &stop, nullptr);
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &s_PreviousPipe);
    CurrentStatus().canDrain = canDrain;
}

StopScope::~StopScope() {
    CurrentStatus().canDrain = false;
    sigaction(SIGTERM, &s_PreviousTerm, nullptr);
    sigaction(SIGINT, &s_PreviousInt, nullptr);
    sigaction(SIGPIPE, &s_PreviousPipe, nullptr);
}

bool StopRequested() {
    return s_Stop;
}

bool AbandonRequested() {
    return CurrentStatus().abandon;
}

void MarkDrained() {
    CurrentStatus().isDrained = true;
}

} // namespace fxhost
