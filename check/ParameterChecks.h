#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"
#include "parameters/Parameter.h"

namespace fxhost {

// Reports declarations that hosts do not show as the author meant them: long labels, ranges and defaults of
// the wrong form, pop-ups without entries, repeated names. `file` is the path of the script; lines are those
// of the declarations.
std::vector<Diagnostic> CheckParameters(const std::string& file, const std::string& script,
                                        const std::vector<Parameter>& parameters);

} // namespace fxhost
