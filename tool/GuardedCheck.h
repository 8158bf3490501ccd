#pragma once

#include <string>
#include <vector>

#include "guard/Guard.h"
#include "packaging/Diagnostic.h"

namespace fxhost {

struct CheckResult {
    std::vector<Diagnostic> diagnostics;
    int status = 0; // of the process: ExitOk, or the reason why the check could not finish
};

// Checks an effect in a guarded child process. When it does not end, the diagnostics name the loop or
// the pass.
CheckResult CheckGuarded(const GuardLimits& limits, const std::string& effect);

// The loop or the pass that does not end, after an effect exceeded its time limit. Empty when it is not
// found.
std::vector<Diagnostic> FindHang(const GuardLimits& limits, const std::string& effect);

// Checks an effect before it is shipped and prints its diagnostics. Throws EffectFailure when it has errors,
// unless `force` is true. `verb` is what is refused, such as "bundled".
void RequireShippable(const GuardLimits& limits, const std::string& effect, const std::string& verb,
                      bool force);

} // namespace fxhost
