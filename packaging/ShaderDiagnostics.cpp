#include "packaging/ShaderDiagnostics.h"

#include <iterator>
#include <sstream>
#include <string_view>

#include "packaging/LanguageHints.h"
#include "packaging/ShaderLog.h"

namespace fxhost {

namespace {

// The engine passes two source strings to GL: a preamble of two lines and the rewritten text. Drivers that
// concatenate the strings report everything in string 0 and count the lines of the preamble too.
constexpr int s_PreambleLines = 2;

struct Block {
    std::string name;
    std::string text;
};

std::vector<Block> Split(const std::string& errorText) {
    constexpr std::string_view head = "Shader \"";
    std::vector<Block> blocks;
    std::istringstream lines(errorText);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(head) && line.ends_with('"') && line.size() > head.size())
            blocks.push_back({line.substr(head.size(), line.size() - head.size() - 1), ""});
        else if (!blocks.empty())
            blocks.back().text += line + "\n";
    }
    return blocks;
}

// Restores the names of functions that rewriting renamed.
std::string WithoutRewriting(std::string text) {
    constexpr std::string_view prefix = "repl_";
    for (auto at = text.find(prefix); at != std::string::npos; at = text.find(prefix, at))
        text.erase(at, prefix.size());
    return text;
}

int AuthorLine(const LogMessage& message, const ShaderOrigin& origin) {
    if (message.line == 0)
        return 0;
    const int line = message.line - origin.linesInFront - (message.string == 0 ? s_PreambleLines : 0);
    if (line < 1 || (origin.lines > 0 && line > origin.lines))
        return 0;
    return line;
}

// Moves a diagnostic about a text in the script to the line of its call.
void MoveToScript(Diagnostic& found, const ShaderOrigin& origin, const std::string& shader) {
    const std::string line = found.line ? ", line " + std::to_string(found.line) : "";
    found.text = "shader \"" + shader + "\"" + line + ": " + found.text;
    found.line = origin.scriptLine;
}

Diagnostic Finding(const LogMessage& message, const ShaderOrigin& origin, const std::string& shader) {
    Diagnostic found{
        origin.file, AuthorLine(message, origin), message.severity, WithoutRewriting(message.text), {}};
    AddShaderHints(found, origin.source);
    if (origin.inScript)
        MoveToScript(found, origin, shader);
    return found;
}

// The driver's log without the headline that names the step.
std::string Log(const std::string& text) {
    constexpr std::string_view headlines[] = {"Shader compilation failed:\n", "Program linking failed:\n"};
    for (const auto headline : headlines)
        if (text.starts_with(headline) && text.size() > headline.size())
            return text.substr(headline.size());
    return text;
}

} // namespace

std::vector<Diagnostic> ShaderDiagnostics(const std::string& errorText, const ShaderLookup& lookup) {
    std::vector<Diagnostic> found;
    for (const Block& block : Split(errorText)) {
        const ShaderOrigin origin = lookup(block.name);
        if (origin.missing) {
            found.push_back({origin.file, 0, Severity::Error, "shader file not found", {}});
            continue;
        }
        const auto messages = ParseShaderLog(Log(block.text));
        if (messages.empty())
            found.push_back(
                {origin.file, 0, Severity::Error, "refused by the driver, which gives no reason", {}});
        for (const LogMessage& message : messages)
            found.push_back(Finding(message, origin, block.name));
    }
    return found;
}

} // namespace fxhost
