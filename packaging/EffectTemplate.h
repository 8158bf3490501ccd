#pragma once

#include <string>

#include "packaging/Archive.h"

namespace fxhost {

// The files of a new effect with this name: a script, a shader and a config.xml that work without changes.
FileMap TemplateEffect(const std::string& name);

} // namespace fxhost
