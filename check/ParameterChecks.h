#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"
#include "parameters/Parameter.h"

namespace fxhost {

// What hosts do not show as the author meant it: long labels, pop-ups of one entry. Lines are those of the
// parameters' declarations in the script, which `file` names.
std::vector<Diagnostic> CheckParameters(const std::string& file, const std::string& script,
                                        const std::vector<Parameter>& parameters);

} // namespace fxhost
