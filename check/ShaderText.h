#pragma once

#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// What compiles and yet is not what the author meant: texture reads that rewriting passes over, so that they
// yield alpha, red, green, blue; #version and #extension lines, which no longer come first.
std::vector<Diagnostic> CheckShaderText(const std::string& file, const std::string& text);

// The line on which a uniform is declared, from 1; 0 when it is not found.
int LineOfUniform(const std::string& text, const std::string& name);

} // namespace fxhost
