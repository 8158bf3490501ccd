#pragma once

#include <functional>
#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// Where the source text of a shader comes from.
struct ShaderOrigin {
    std::string file;      // path as the author knows it
    bool missing = false;  // the effect has no such file
    int lines = 0;         // number of lines of the author's text, 0 when unknown
    int linesInFront = 0;  // number of lines that the engine's rewriting inserts before it
    bool inScript = false; // the text is a string in the script `file`; the call is on `scriptLine`
    int scriptLine = 0;
    std::string source; // the author's text, for hints; may be empty
};
using ShaderLookup = std::function<ShaderOrigin(const std::string& name)>;

// Converts the error text that the engine collects (for each shader a line "Shader "name"", a headline and
// the driver's log) to diagnostics with the author's line numbers. Lines outside the author's text become 0.
std::vector<Diagnostic> ShaderDiagnostics(const std::string& errorText, const ShaderLookup& lookup);

} // namespace fxhost
