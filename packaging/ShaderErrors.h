#pragma once

#include <functional>
#include <string>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// What is known of a shader by its name.
struct ShaderOrigin {
    std::string file;      // how it is shown to the author
    bool missing = false;  // the effect has no such file
    int lines = 0;         // lines of the author's text, 0 when unknown
    int linesInFront = 0;  // lines that rewriting puts before the author's first
    bool inScript = false; // the text is a string in the script `file`, whose call is on `scriptLine`
    int scriptLine = 0;
};
using ShaderLookup = std::function<ShaderOrigin(const std::string& name)>;

// The engine's collected error text (blocks of "Shader "name"", a headline and the driver's log) as findings
// with the author's own lines. Lines outside the author's text become 0.
std::vector<Diagnostic> ShaderDiagnostics(const std::string& errorText, const ShaderLookup& lookup);

} // namespace fxhost
