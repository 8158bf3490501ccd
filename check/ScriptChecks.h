#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Reports members of SV_Type, SV_GL and SV_ParamFlags that do not exist, which are undefined, and functions
// SV_... that do not exist. `file` is the path of the script in the diagnostics.
std::vector<Diagnostic> CheckScript(const std::string& file, const std::string& script);

} // namespace fxhost
