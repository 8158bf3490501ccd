#pragma once

#include <string>

#include "packaging/Archive.h"

namespace fxhost {

// The files of a new effect of this name: a script, a shader and a configuration that work as they are.
FileMap TemplateEffect(const std::string& name);

} // namespace fxhost
