#include "check/ShaderChecks.h"

#include <algorithm>
#include <cctype>
#include <regex>

#include "gpu/ShaderPitcher.h"
#include "packaging/ScriptScan.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

// Functions that read a texture, and whether the rewriting of shaders handles them.
struct ReadFunction {
    const char* name;
    bool rewritten;
};
constexpr ReadFunction s_Reads[] = {
    {"texture2D", true},      {"texture2DLod", true},      {"textureCube", true},
    {"texture2DProj", false}, {"texture2DProjLod", false}, {"textureCubeLod", false},
};

bool IsNamePart(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// True when text without comments contains a call of exactly this function at `at`.
bool IsCall(const std::string& text, std::size_t at, std::size_t length) {
    if (at > 0 && IsNamePart(text[at - 1]))
        return false;
    const auto next = text.find_first_not_of(" \t\r\n\v\f", at + length);
    return next != std::string::npos && text[next] == '(';
}

// Rewriting searches for calls from the second character on.
bool IsRewritten(const std::string& text, const std::string& name, std::size_t at) {
    return at > 0 && findRoutine(text, name, 1, at) == at;
}

std::string Why(const std::string& text, std::size_t at) {
    return at == 0 ? std::string("it comes first in the file")
                   : std::string("of the \"") + text[at - 1] + "\" before it; put a blank there";
}

void CheckReads(const ReadFunction& read, const std::string& file, const std::string& text,
                const std::string& code, std::vector<Diagnostic>& found) {
    const std::string name = read.name;
    for (auto at = code.find(name); at != std::string::npos; at = code.find(name, at + 1)) {
        if (!IsCall(code, at, name.size()) || (read.rewritten && IsRewritten(text, name, at)))
            continue;
        found.push_back(
            {file,
             LineAt(text, at),
             Severity::Warning,
             name + " yields alpha, red, green, blue here: this read is not rewritten, because " +
                 (read.rewritten ? Why(text, at) : std::string("the engine does not know the function")),
             {}});
    }
}

} // namespace

std::vector<Diagnostic> CheckShaderSource(const std::string& file, const std::string& text) {
    static const std::regex s_Directive(R"((?:^|\n)[ \t]*#[ \t]*(version|extension)\b)");
    const std::string code = WithoutComments(text);
    std::vector<Diagnostic> found;
    for (const ReadFunction& read : s_Reads)
        CheckReads(read, file, text, code, found);
    for (std::sregex_iterator line(code.begin(), code.end(), s_Directive), end; line != end; ++line)
        found.push_back({file,
                         LineAt(code, static_cast<std::size_t>(line->position(1))),
                         Severity::Warning,
                         "#" + line->str(1) +
                             " does not come first once the engine has put its own lines in "
                             "front; leave it out",
                         {}});
    std::stable_sort(found.begin(), found.end(),
                     [](const Diagnostic& a, const Diagnostic& b) { return a.line < b.line; });
    return found;
}

int LineOfUniform(const std::string& text, const std::string& name) {
    const std::string code = WithoutComments(text);
    static const std::regex s_Declaration(R"(\buniform\b([^;]*);)");
    for (std::sregex_iterator at(code.begin(), code.end(), s_Declaration), end; at != end; ++at) {
        const std::string names = at->str(1);
        for (auto found = names.find(name); found != std::string::npos; found = names.find(name, found + 1)) {
            const auto after = found + name.size();
            if (found > 0 && !IsNamePart(names[found - 1]) &&
                (after == names.size() || !IsNamePart(names[after])))
                return LineAt(code, static_cast<std::size_t>(at->position(1)) + found);
        }
    }
    return 0;
}

} // namespace fxhost
