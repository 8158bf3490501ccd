#pragma once

#include <functional>
#include <string>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Loads an effect, runs its callbacks at several sizes, depths and settings, and tells what is wrong with it,
// also what the engine passes over in silence. One effect in a process. Throws WrongUse and EffectFailure.
void CheckEffect(const std::string& effect, const std::function<void(const Diagnostic&)>& tell);

} // namespace fxhost
