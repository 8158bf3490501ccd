#pragma once

#include <functional>
#include <string>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Loads an effect, runs its callbacks at several sizes, depths and parameter values, and reports mistakes,
// including those that the engine ignores. One effect per process. Throws WrongUse and EffectFailure.
void CheckEffect(const std::string& effect, const std::function<void(const Diagnostic&)>& report);

} // namespace fxhost
