#include "guard/StopRequest.h"

#include <csignal>

#include "guard/Board.h"

namespace fxhost {

namespace {

std::atomic<bool> s_Stop{false};
struct sigaction s_OldTerm, s_OldInt, s_OldPipe;

void OnStop(int) {
    s_Stop = true;
}

} // namespace

StopScope::StopScope(bool canDrain) {
    s_Stop = false;
    struct sigaction stop {};
    stop.sa_handler = OnStop;
    stop.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &stop, &s_OldTerm);
    // A guarded child leaves SIGINT to its parent.
    sigaction(SIGINT, nullptr, &s_OldInt);
    if (s_OldInt.sa_handler != SIG_IGN)
        sigaction(SIGINT, &stop, nullptr);
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &s_OldPipe);
    CurrentBoard().canDrain = canDrain;
}

StopScope::~StopScope() {
    endDrain();
    sigaction(SIGTERM, &s_OldTerm, nullptr);
    sigaction(SIGINT, &s_OldInt, nullptr);
    sigaction(SIGPIPE, &s_OldPipe, nullptr);
}

void StopScope::endDrain() {
    CurrentBoard().canDrain = false;
}

bool StopRequested() {
    return s_Stop;
}

bool AbandonRequested() {
    return CurrentBoard().abandon;
}

void MarkDrained() {
    CurrentBoard().isDrained = true;
}

} // namespace fxhost
