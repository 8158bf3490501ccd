#include "packaging/LanguageHints.h"

#include <algorithm>
#include <iterator>
#include <regex>
#include <sstream>

#include "packaging/ScriptScan.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

struct Hint {
    const char* pattern; // of the author's text
    const char* note;
};

constexpr Hint s_ScriptHints[] = {
    {R"(=>)", "arrow functions are newer than ECMAScript 5.1: write function (x) { return ...; }"},
    {R"(`)", "template strings are newer than ECMAScript 5.1: write \"text\" + value"},
    {R"(\blet\b)", "let is newer than ECMAScript 5.1: write var"},
    {R"(\bclass\b)", "classes are newer than ECMAScript 5.1: write functions and objects"},
    {R"(\bfor\s*\([^;)]*\bof\b)",
     "for-of is newer than ECMAScript 5.1: write array.forEach(function (x) { ... })"},
    {R"(\.\.\.)", "the spread operator is newer than ECMAScript 5.1: use apply() or concat()"},
    {R"(\b(var|const)\s*[\[{])",
     "destructuring is newer than ECMAScript 5.1: write one assignment for each value"},
    {R"(\b(import|export)\b)",
     "scripts have no modules: one line \"import S;\" is allowed, and everything is in fx.js"},
};

constexpr Hint s_ShaderHints[] = {
    {R"(^\s*#\s*version\b)",
     "leave out #version: the engine puts its own lines before it, and shaders are GLSL 1.10"},
    {R"(^\s*#\s*include\b)", "GLSL has no #include: copy the text, or put the source together in fx.js"},
    {R"(^\s*(layout\b.*\)\s*)?in\s+\w+\s+\w+)",
     "in is newer GLSL: the coordinate of the pixel is gl_TexCoord[0].xy, and values come as uniforms"},
    {R"(^\s*(layout\b.*\)\s*)?out\s+\w+\s+\w+)", "out is newer GLSL: write the result to gl_FragColor"},
    {R"(\btexture\s*\()", "texture() is newer GLSL: write texture2D(sampler, coordinate)"},
    {R"(\btextureLod\s*\()", "textureLod() is newer GLSL: write texture2DLod(sampler, coordinate, level)"},
    {R"(\bvarying\b)", "the engine's vertex shader writes only gl_TexCoord[0] to [3] and gl_Color: use "
                       "gl_TexCoord[0].xy in place of own "
                       "varyings"},
    {R"(\b(uint|uvec[234])\b)", "unsigned integers are newer GLSL: use int or float"},
    {R"(%)", "% is newer GLSL: write mod(x, y) with floats"},
    {R"((^|[^&])&([^&]|$)|(^|[^|])\|([^|]|$)|<<|>>|~)",
     "operations on bits are newer GLSL: use floor() and mod() with floats"},
    {R"(\b(round|roundEven|trunc)\s*\()",
     "round() and trunc() are newer GLSL: write floor(x + 0.5), or sign(x) * floor(abs(x))"},
};

std::string LineOf(const std::string& text, int line) {
    std::istringstream lines(text);
    std::string found;
    for (int i = 0; i < line && std::getline(lines, found); ++i) {
    }
    return found;
}

template <class Rows>
void AddMatching(const Rows& rows, const std::string& text, Diagnostic& error) {
    for (const Hint& hint : rows)
        if (std::regex_search(text, std::regex(hint.pattern)))
            error.notes.push_back(hint.note);
}

// The first line of the text that one of the rows matches; 0 when there is none.
template <class Rows>
int FirstMatchingLine(const Rows& rows, const std::string& text) {
    std::istringstream lines(text);
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (std::any_of(std::begin(rows), std::end(rows),
                        [&](const Hint& hint) { return std::regex_search(line, std::regex(hint.pattern)); }))
            return number;
    }
    return 0;
}

// Rewriting takes the first word main with "(" behind it for the function, also in a comment. Returns the
// line of such a comment; 0 when there is none.
int LineOfMainInComment(const std::string& source) {
    static const std::regex s_Call(R"(\smain\s*\()");
    std::smatch first;
    if (!std::regex_search(source, first, s_Call))
        return 0;
    const auto at = static_cast<std::size_t>(first.position()) + 1;
    return WithoutComments(source).compare(at, 4, "main") == 0 ? 0 : LineAt(source, at);
}

} // namespace

void AddScriptHints(Diagnostic& error, const std::string& script) {
    if (error.text.starts_with("SyntaxError") && error.line > 0)
        AddMatching(s_ScriptHints, LineOf(WithoutComments(script), error.line), error);
}

void AddShaderHints(Diagnostic& error, const std::string& source) {
    const std::string code = WithoutComments(source);
    if (const int line = LineOfMainInComment(source);
        line > 0 && error.text.find("main") != std::string::npos) {
        error.line = line;
        error.notes.push_back(
            "the engine takes the word main in this comment for the function: write another word");
        return;
    }
    if (error.line == 0)
        error.line = FirstMatchingLine(s_ShaderHints, code);
    AddMatching(s_ShaderHints, LineOf(code, error.line), error);
}

} // namespace fxhost
