#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"
#include "packaging/EffectSource.h"

namespace fxhost {

// Converts the shader errors that the engine collected to diagnostics in the files of the effect.
std::vector<Diagnostic> ShaderFindings(const std::string& errorText, const EffectSource& source);

// Reports missing files: those that the engine tried to read, and those that the script names in string
// literals. ShaderFindings reports missing shader files.
std::vector<Diagnostic> MissingFileFindings(const EffectSource& source);

// Returns why OpenGL could not store the frame or the input layer of the current instance; empty when it
// could.
std::string FrameProblem();

} // namespace fxhost
