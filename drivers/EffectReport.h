#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"
#include "packaging/EffectSource.h"

namespace fxhost {

// The engine's collected shader errors as findings in the effect's own files.
std::vector<Diagnostic> ShaderFindings(const std::string& errorText, const EffectSource& source);

// Files that the effect names and does not have: those that the engine asked for, and those that the script
// names in plain text. Shaders among them are left to ShaderFindings.
std::vector<Diagnostic> MissingFileFindings(const EffectSource& source);

} // namespace fxhost
