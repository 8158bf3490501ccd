#include "check/LoopGuard.h"

#include <map>
#include <regex>
#include <utility>

#include "packaging/ScriptScan.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

// The position of the parenthesis that closes the one at `open`; npos when there is none.
std::size_t ClosingParenthesis(const std::string& text, std::size_t open) {
    int depth = 0;
    for (std::size_t i = open; i < text.size(); ++i) {
        depth += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
        if (depth == 0)
            return i;
    }
    return std::string::npos;
}

// The positions of the two semicolons in the head of a for loop; npos for other heads, such as for-in.
std::pair<std::size_t, std::size_t> Semicolons(const std::string& text, std::size_t open, std::size_t close) {
    int depth = 0;
    std::size_t first = std::string::npos;
    for (std::size_t i = open + 1; i < close; ++i) {
        const std::string opening = "([{", closing = ")]}";
        depth += opening.find(text[i]) != std::string::npos   ? 1
                 : closing.find(text[i]) != std::string::npos ? -1
                                                              : 0;
        if (depth == 0 && text[i] == ';') {
            if (first != std::string::npos)
                return {first, i};
            first = i;
        }
    }
    return {first, std::string::npos};
}

// Throws at the outermost of the loops that are running, which is the one that does not end.
std::string Definition(double seconds) {
    return "eval(\"var _limitLoop = function (line) {"
           " var seen = _limitLoop.seen, now = seen[line] = Date.now();"
           " _limitLoop.begin = _limitLoop.begin || now;"
           " if (now - _limitLoop.begin < " +
           std::to_string(static_cast<int>(seconds * 1000)) +
           ") return true;"
           " for (var other in seen) if (+other < line && now - seen[other] < 300) return true;"
           " throw new Error('this loop does not end'); };"
           " _limitLoop.seen = {};\"); ";
}

using Insertions = std::map<std::size_t, std::string>; // by position in the script

void AddLimit(const std::string& text, const std::string& keyword, std::size_t open, Insertions& insertions) {
    const std::size_t close = ClosingParenthesis(text, open);
    if (close == std::string::npos)
        return;
    const std::string call = "_limitLoop(" + std::to_string(LineAt(text, open)) + ")";
    if (keyword == "while") {
        insertions[open + 1] += call + " && (";
        insertions[close] += ")";
    } else if (const auto [first, second] = Semicolons(text, open, close); second != std::string::npos) {
        const bool isEmpty = Trimmed(text.substr(first + 1, second - first - 1)).empty();
        insertions[first + 1] += call + (isEmpty ? "" : " && (");
        insertions[second] += isEmpty ? "" : ")";
    }
}

} // namespace

// Searches a copy in which comments and strings are blank, so that positions are those of the script.
std::string LimitLoops(const std::string& script, double seconds) {
    static const std::regex s_Loop(R"(\b(while|for)\s*\()");
    const std::string text = WithoutStrings(WithoutComments(script));
    Insertions insertions;
    for (std::sregex_iterator at(text.begin(), text.end(), s_Loop), end; at != end; ++at)
        AddLimit(text, at->str(1), static_cast<std::size_t>(at->position() + at->length() - 1), insertions);
    std::string result = script;
    for (auto at = insertions.rbegin(); at != insertions.rend(); ++at)
        result.insert(at->first, at->second);
    return Definition(seconds) + result;
}

} // namespace fxhost
