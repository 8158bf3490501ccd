#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace fxhost {

struct GuardLimits {
    // Seconds for setup, and for each frame from preRender to read-back; 0 means no limit.
    double frameSeconds = 60;
    // Bytes of private memory that the work may use; 0 means three quarters of the machine's memory.
    std::uint64_t memoryBytes = 0;
    // False runs the work in the calling process, with a watchdog thread in place of the parent. A hang still
    // ends the process with ExitRanAway, but nobody reports a crash, and memory is only measured, not
    // limited. For debuggers and sanitizers, which cannot follow a fork.
    bool fork = true;
    // True to print no messages about limits and crashes.
    bool isSilent = false;
};

// Runs `work` in a child process, unless limits.fork is false, and returns its exit status. WrongUse and
// EffectFailure become a message and their exit status. When the child exceeds a limit or crashes, the
// message names `effect`, the frame and the stage, and the result is ExitRanAway. The stages are those that
// StageSpan reports.
//
// The first SIGINT, SIGTERM or SIGHUP is passed on to the child as SIGTERM, the second one as SIGKILL. After
// a stop the result is 128 plus the number of the first signal, as shells expect. ReportedWritten() is that
// of the child. The child dies with its parent. When a limit is exceeded, frames that are already rendered
// are written first, provided that the work reacts to AbandonRequested. Call it while the process has one
// thread and no GL context.
int RunGuarded(const GuardLimits& limits, const std::string& effect, const std::function<int()>& work);

} // namespace fxhost
