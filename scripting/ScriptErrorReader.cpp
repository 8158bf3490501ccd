#include "scripting/ScriptErrorReader.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

#include "scripting/PitchScript.h"

namespace {

constexpr char s_ScriptName[] = "fx.js";
constexpr char s_CallbackEnd[] = "(";
constexpr char s_EngineFile[] = "(eval:"; // how the interpreter names evaluated text in a traceback
constexpr char s_LineWord[] = "(line ";   // and where it puts the line into a syntax error's message

// The error as three strings: what it says, where it happened, its own idea of the line. Property reads can
// run script code and throw, so this runs protected.
duk_ret_t Describe(duk_context* context, void*) {
    const duk_idx_t error = duk_get_top_index(context);
    if (duk_is_object(context, error)) {
        duk_get_prop_string(context, error, "lineNumber");
        duk_get_prop_string(context, error, "stack");
    } else {
        duk_push_undefined(context);
        duk_push_undefined(context);
    }
    duk_to_string(context, -1);
    duk_to_int(context, -2);
    duk_dup(context, error);
    duk_to_string(context, -1);
    return 3;
}

// A line of the evaluated program in the author's numbering; 0 for lines the author did not write.
int AuthorLine(int line) {
    return line > ScriptPreludeLines() ? line - ScriptPreludeLines() : 0;
}

// Rewrites the numbers that follow `mark`; `name` replaces the mark.
std::string Renumber(std::string text, const std::string& mark, const std::string& name) {
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at + 1)) {
        const auto digits = at + mark.size();
        auto end = digits;
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])))
            ++end;
        const int line = AuthorLine(std::atoi(text.c_str() + digits));
        text.replace(at, end - at, name + std::to_string(line));
    }
    return text;
}

// The line of the innermost script frame; callbacks and natives have lines that are not the author's.
int FirstScriptLine(const std::string& stack) {
    for (auto at = stack.find(s_EngineFile); at != std::string::npos; at = stack.find(s_EngineFile, at + 1)) {
        const int line = AuthorLine(std::atoi(stack.c_str() + at + sizeof s_EngineFile - 1));
        if (line > 0)
            return line;
    }
    return 0;
}

} // namespace

ScriptError ReadScriptError(duk_context* context, const char* text) {
    ScriptError error;
    const std::string callback(text, std::strcspn(text, s_CallbackEnd));
    const bool isCallback = callback == "preRender" || callback == "draw" || callback == "updateUIFlags";
    error.evaluated = isCallback ? callback : s_ScriptName;

    duk_dup_top(context);
    if (duk_safe_call(context, Describe, nullptr, 1, 3) != DUK_EXEC_SUCCESS) {
        error.message = "an error that cannot be shown";
    } else {
        const std::string stack = duk_get_string(context, -2);
        const std::string message = duk_get_string(context, -1);
        error.line = FirstScriptLine(stack);
        if (error.line == 0 && !isCallback)
            error.line = AuthorLine(duk_get_int(context, -3));
        error.message = Renumber(message, s_LineWord, s_LineWord);
        error.stack = Renumber(Renumber(stack, s_EngineFile, std::string("(") + s_ScriptName + ":"),
                               s_LineWord, s_LineWord);
    }
    duk_pop_3(context);
    return error;
}
