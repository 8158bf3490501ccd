#pragma once

#include <string>
#include <vector>

namespace fxhost {

enum class Severity { Warning, Error };

// An error or warning about a line of an effect, like the diagnostics of a compiler.
struct Diagnostic {
    std::string file;
    int line = 0; // from 1; 0 when it concerns the whole file
    Severity severity = Severity::Error;
    std::string text;
    std::vector<std::string> notes; // additional lines, such as a call stack

    bool operator==(const Diagnostic&) const = default;
};

// "file:line: error: text", followed by each note on an indented line. There is no final line feed.
std::string ToText(const Diagnostic& diagnostic);

} // namespace fxhost
