#include "packaging/ScriptScan.h"

#include <regex>

#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

struct Call {
    bool isShader = false;
    std::string name;
    bool hasMore = false; // another argument follows
    int line = 0;
};

// Group 1 is the function, group 3 the name, group 4 the character after the name.
const std::regex& CallPattern() {
    static const std::regex s_Pattern(
        R"re((?:SV_|S\.V\.)(initShader|initTexture)\s*\(\s*(["'])([^"'\\\n]*)\2\s*([),]))re",
        std::regex::optimize);
    return s_Pattern;
}

std::vector<Call> Calls(const std::string& script) {
    const std::string text = WithoutComments(script);
    std::vector<Call> calls;
    for (std::sregex_iterator call(text.begin(), text.end(), CallPattern()), end; call != end; ++call)
        calls.push_back({(*call)[1] == "initShader", (*call)[3], (*call)[4] == ",",
                         LineAt(text, static_cast<std::size_t>(call->position()))});
    return calls;
}

} // namespace

std::string WithoutComments(const std::string& script) {
    enum class In { Code, Line, Block, String } in = In::Code;
    char quote = 0;
    std::string text = script;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = script[i], next = i + 1 < script.size() ? script[i + 1] : '\0';
        if (in == In::Code && c == '/' && (next == '/' || next == '*')) {
            in = next == '/' ? In::Line : In::Block;
            text[i] = text[i + 1] = ' ';
            ++i;
        } else if (in == In::Code && (c == '"' || c == '\'')) {
            in = In::String;
            quote = c;
        } else if (in == In::String) {
            if (c == '\\')
                ++i;
            else if (c == quote || c == '\n')
                in = In::Code;
        } else if (in == In::Line || in == In::Block) {
            if (in == In::Line && c == '\n') {
                in = In::Code;
            } else if (in == In::Block && c == '*' && next == '/') {
                text[i] = text[i + 1] = ' ';
                ++i;
                in = In::Code;
            } else if (c != '\n') {
                text[i] = ' ';
            }
        }
    }
    return text;
}

std::string WithoutStrings(const std::string& script) {
    static const std::regex s_Literal(R"re("(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)*')re", std::regex::optimize);
    std::string text = script;
    for (std::sregex_iterator at(script.begin(), script.end(), s_Literal), end; at != end; ++at)
        for (std::ptrdiff_t i = 1; i + 1 < at->length(); ++i)
            text[static_cast<std::size_t>(at->position() + i)] = ' ';
    return text;
}

std::vector<FileReference> FindFileReferences(const std::string& script) {
    std::vector<FileReference> found;
    for (const Call& call : Calls(script))
        if (!call.isShader || !call.hasMore) // the second argument of initShader is the source text
            found.push_back({call.name + (call.isShader ? ".frag" : ""), call.line});
    return found;
}

int LineOfInlineShader(const std::string& script, const std::string& name) {
    for (const Call& call : Calls(script))
        if (call.isShader && call.hasMore && call.name == name)
            return call.line;
    return 0;
}

int LineOfString(const std::string& script, const std::string& content) {
    const std::string text = WithoutComments(script);
    for (const char quote : {'"', '\''})
        if (const auto at = text.find(quote + content + quote); at != std::string::npos)
            return LineAt(text, at);
    return 0;
}

int LineOfWord(const std::string& script, const std::string& word) {
    const std::string text = WithoutComments(script);
    auto at = text.find(word);
    if (at == std::string::npos) // only comments contain it
        at = script.find(word);
    return at == std::string::npos ? 0 : LineAt(script, at);
}

bool NamesUniform(const std::string& script, const std::string& name) {
    static const std::regex s_Declares(R"(initParam\s*\(\s*$)");
    const std::string text = WithoutComments(script);
    for (const char quote : {'"', '\''}) {
        const std::string literal = quote + name + quote;
        for (auto at = text.find(literal); at != std::string::npos; at = text.find(literal, at + 1)) {
            const auto from = at > 40 ? at - 40 : 0;
            if (!std::regex_search(text.substr(from, at - from), s_Declares))
                return true;
        }
    }
    return false;
}

} // namespace fxhost
