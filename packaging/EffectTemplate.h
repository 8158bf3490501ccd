#pragma once

#include <string>
#include <vector>

#include "packaging/Archive.h"

namespace fxhost {

struct EffectTemplate {
    const char* name;
    const char* description; // one line, for the help text
};

// The templates for new effects; the first one is the default.
const std::vector<EffectTemplate>& EffectTemplates();

// The files of a new effect: a script, its shaders and a config.xml that work without changes. `effect` is
// the name of the effect, `kind` that of the template. Throws std::out_of_range when there is no such
// template.
FileMap MakeEffect(const std::string& effect, const std::string& kind);

} // namespace fxhost
