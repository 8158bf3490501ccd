#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Reports settings of config.xml that the engine does not read as meant: settings inside a root element,
// unknown settings, missing flags, numbers that are not decimal, the flag of threaded rendering. `text` is
// well-formed; `file` is its path in the diagnostics.
std::vector<Diagnostic> CheckConfig(const std::string& file, const std::string& text);

} // namespace fxhost
