#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace fxhost {

struct GuardLimits {
    double frameSeconds = 60;      // for setup, and for each frame from preRender to read-back; 0: no limit
    std::uint64_t memoryBytes = 0; // that the work may take; 0: three quarters of the machine's memory
};

// Runs `work` in a child process and gives its exit status, or ExitRanAway after the child ran out of time or
// memory or crashed; a message then names `effect`, the frame and the stage. Stages come from StageSpan.
//
// The child ends with work's result; WrongUse and EffectFailure become a message and their status. SIGINT,
// SIGTERM and SIGHUP are passed on to the child as SIGTERM, the second one as SIGKILL; the child dies with
// its parent. Frames that are rendered when a limit is hit are written first if the work answers
// AbandonRequested. To be called while the process has one thread and no GL context.
int RunGuarded(const GuardLimits& limits, const std::string& effect, const std::function<int()>& work);

} // namespace fxhost
