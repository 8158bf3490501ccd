#include "scripting/ScriptErrorReader.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <vector>

#include "scripting/PitchScript.h"
#include "scripting/ScriptText.h"

namespace {

constexpr char s_ScriptName[] = "fx.js";
constexpr char s_CallbackEnd[] = "(";
constexpr char s_EngineFile[] = "(eval:"; // the interpreter's name of evaluated text in a traceback
constexpr char s_FirstCall[] = "\n    at ";
constexpr char s_InternalCall[] = " internal"; // end of a call inside the interpreter
constexpr char s_LineWord[] = "(line ";        // precedes the line in the message of a syntax error

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

// Converts the line number that follows the last `mark` of the text, and replaces the mark by `name`.
std::string Renumber(std::string text, const std::string& mark, const std::string& name) {
    const auto at = text.rfind(mark);
    if (at == std::string::npos)
        return text;
    const auto digits = at + mark.size();
    auto end = digits;
    while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])))
        ++end;
    const int line = AuthorLine(std::atoi(text.c_str() + digits));
    return text.replace(at, end - at, name + std::to_string(line));
}

// The calls of a traceback, innermost first. A traceback begins with the message, in which the author may
// have written anything, and has one line for each call.
std::vector<std::string> CallsOf(const std::string& stack, const std::string& message) {
    const auto calls = stack.starts_with(message) ? message.size() : stack.find(s_FirstCall);
    std::istringstream lines(calls < stack.size() ? stack.substr(calls) : std::string());
    std::vector<std::string> found;
    for (std::string line; std::getline(lines, line);)
        if (!line.empty())
            found.push_back(line);
    return found;
}

// True when the evaluated text could not be compiled. Texts that the script itself evaluates do not count.
bool IsCompileError(const std::vector<std::string>& calls) {
    return !calls.empty() && calls.front().find(s_EngineFile) != std::string::npos &&
           calls.front().ends_with(s_InternalCall);
}

// Returns the author's line of the innermost call; the lines of callback texts and of native functions are
// not the author's.
int FirstScriptLine(const std::vector<std::string>& calls) {
    for (const std::string& call : calls)
        if (const auto at = call.rfind(s_EngineFile); at != std::string::npos)
            if (const int line = AuthorLine(std::atoi(call.c_str() + at + sizeof s_EngineFile - 1)); line > 0)
                return line;
    return 0;
}

void Translate(ScriptError& error, const std::string& stack, const std::string& message) {
    const std::vector<std::string> calls = CallsOf(stack, message);
    error.line = FirstScriptLine(calls);
    error.message = IsCompileError(calls) ? Renumber(message, s_LineWord, s_LineWord) : message;
    error.stack = error.message;
    for (const std::string& call : calls)
        error.stack += "\n" + Renumber(call, s_EngineFile, std::string("(") + s_ScriptName + ":");
}

// Pushes the line of a call on the interpreter's stack, or undefined when there is no such call. Runs in a
// protected call, because it allocates memory.
duk_ret_t InspectCall(duk_context* context, void* level) {
    duk_inspect_callstack_entry(context, *static_cast<duk_int_t*>(level));
    if (duk_is_object(context, -1))
        duk_get_prop_string(context, -1, "lineNumber");
    return 1;
}

} // namespace

std::string EvaluatedName(const char* text) {
    const std::string callback(text, std::strcspn(text, s_CallbackEnd));
    const bool isCallback = callback == "preRender" || callback == "draw" || callback == "updateUIFlags";
    return isCallback ? callback : s_ScriptName;
}

int CallingLine(duk_context* context) {
    int line = 0;
    bool isCall = true;
    for (duk_int_t level = -2; line == 0 && isCall; --level) { // -1 is the native function
        isCall = duk_safe_call(context, InspectCall, &level, 0, 1) == DUK_EXEC_SUCCESS &&
                 duk_is_number(context, -1);
        line = isCall ? AuthorLine(duk_get_int(context, -1)) : 0;
        duk_pop(context);
    }
    return line;
}

void DescribeScriptError(duk_context* context) {
    duk_safe_call(context, Describe, nullptr, 1, 3);
}

ScriptError ReadScriptError(duk_context* context, const char* text) {
    ScriptError error;
    error.evaluated = EvaluatedName(text);
    const bool isCallback = error.evaluated != s_ScriptName;
    if (!duk_is_string(context, -1)) { // Describe failed, and its results are an error and undefined values
        error.message = "an error that cannot be shown";
        return error;
    }
    Translate(error, Utf8FromScript(duk_get_string(context, -2)),
              Utf8FromScript(duk_get_string(context, -1)));
    if (error.line == 0 && !isCallback)
        error.line = AuthorLine(duk_get_int(context, -3));
    return error;
}
