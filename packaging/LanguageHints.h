#pragma once

#include <string>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Adds notes to a script error that say how to write newer JavaScript in ECMAScript 5.1. `script` is the text
// of fx.js.
void AddScriptHints(Diagnostic& error, const std::string& script);

// Adds notes to a shader error about words of newer GLSL, missing directives and the engine's rewriting, with
// the form that works. Sets the line when the driver gives none and the cause is found. `source` is the
// author's text.
void AddShaderHints(Diagnostic& error, const std::string& source);

} // namespace fxhost
