#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Compiles the source of a fragment shader as GLSL 1.10, the version of shaders without a #version line, with
// a front end that accepts no newer features. Drivers differ: some accept % or 1.0f there, others do not.
// Returns a warning for each error. `file` is the path in the diagnostics.
std::vector<Diagnostic> CheckStrictly(const std::string& file, const std::string& source);

} // namespace fxhost
