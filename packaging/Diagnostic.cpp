#include "packaging/Diagnostic.h"

namespace fxhost {

std::string ToText(const Diagnostic& diagnostic) {
    std::string text = diagnostic.file + ":";
    if (diagnostic.line > 0)
        text += std::to_string(diagnostic.line) + ":";
    text += diagnostic.severity == Severity::Error ? " error: " : " warning: ";
    text += diagnostic.text;
    for (const auto& note : diagnostic.notes)
        text += "\n    " + note;
    return text;
}

} // namespace fxhost
