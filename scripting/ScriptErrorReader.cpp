#include "scripting/ScriptErrorReader.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

#include "scripting/PitchScript.h"

namespace {

constexpr char s_ScriptName[] = "fx.js";
constexpr char s_CallbackEnd[] = "(";
constexpr char s_EngineFile[] = "(eval:"; // the interpreter's name of evaluated text in a traceback
constexpr char s_LineWord[] = "(line ";   // precedes the line in the message of a syntax error

// Pushes the error's line number, traceback and text. Reading properties can run script code and throw, so
// this function runs in a protected call.
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

// Converts the line numbers that follow `mark`, and replaces the mark by `name`.
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

// Returns the author's line of the innermost call; the lines of callback texts and of native functions are
// not the author's.
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
