#include "scripting/Console.h"

#include <duktape.h>

#include "scripting/ScriptErrorReader.h"
#include "scripting/ScriptText.h"
#include "scripting/Scripting.h"

namespace {

constexpr const char* s_ConsoleMethods[] = {"log", "info", "warn", "error"};

duk_ret_t EncodeJson(duk_context* context, void*) {
    duk_json_encode(context, -1);
    return 1;
}

// Replaces the argument by its text. Conversions that throw give the text of the error.
void ConvertToText(duk_context* context, duk_idx_t index) {
    const bool isData =
        duk_is_object(context, index) && !duk_is_function(context, index) && !duk_is_error(context, index);
    if (isData) {
        duk_dup(context, index);
        if (duk_safe_call(context, EncodeJson, nullptr, 1, 1) == DUK_EXEC_SUCCESS)
            duk_replace(context, index);
        else
            duk_pop(context);
    }
    duk_safe_to_string(context, index);
}

// Creates no C++ object until the last call that can leave the function by longjmp.
duk_ret_t Print(duk_context* context) {
    if (!Scripting::PrintCallback)
        return 0;
    const duk_idx_t count = duk_get_top(context);
    for (duk_idx_t i = 0; i < count; ++i)
        ConvertToText(context, i);
    duk_push_string(context, " ");
    duk_insert(context, 0);
    duk_join(context, count);
    const int line = CallingLine(context);
    const char* const text = duk_get_string(context, -1);
    try {
        Scripting::PrintCallback({Utf8FromScript(text), line});
    } catch (...) { // C++ exceptions must not cross the interpreter's frames
    }
    return 0;
}

} // namespace

void RegisterConsole(duk_context* context) {
    duk_push_global_object(context);
    duk_push_c_function(context, Print, DUK_VARARGS);
    duk_push_object(context);
    for (const char* const method : s_ConsoleMethods) {
        duk_dup(context, -2);
        duk_put_prop_string(context, -2, method);
    }
    duk_put_prop_string(context, -3, "console");
    duk_put_prop_string(context, -2, "print");
    duk_pop(context);
}
