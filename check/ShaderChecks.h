#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Reports source text that compiles but does not do what the author meant: texture reads that the rewriting
// of shaders does not recognise, so that they return alpha, red, green, blue; #version and #extension lines,
// which are not first after rewriting.
std::vector<Diagnostic> CheckShaderSource(const std::string& file, const std::string& text);

// The line on which a uniform is declared, from 1; 0 when it is not found.
int LineOfUniform(const std::string& text, const std::string& name);

} // namespace fxhost
