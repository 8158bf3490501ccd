#pragma once

#include <string>
#include <vector>

namespace fxhost {

enum class Severity { Warning, Error };

// One finding about an effect, in the form that editors understand.
struct Diagnostic {
    std::string file;
    int line = 0; // from 1; 0 when the finding belongs to the whole file
    Severity severity = Severity::Error;
    std::string text;
    std::vector<std::string> notes; // more lines: a script's stack, what a driver added

    bool operator==(const Diagnostic&) const = default;
};

// "file:line: error: text", then each note on a line of its own, indented. No line feed at the end.
std::string ToText(const Diagnostic& diagnostic);

} // namespace fxhost
