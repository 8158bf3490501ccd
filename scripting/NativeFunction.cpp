#include "scripting/NativeFunction.h"

#include "scripting/Scripting.h"

ScriptResult ResultOf(Refusal refusal) {
    switch (refusal) {
    case Refusal::Zero:
        return ScriptResult::Number(0);
    case Refusal::NotAShader:
        return ScriptResult::Text("Id is not a shader!");
    case Refusal::False:
        break;
    }
    return ScriptResult::Bool(false);
}

void ReportNativeException() noexcept {
    try {
        Scripting::Instance().Report("Error: a native function has no memory");
    } catch (...) { // there is no memory for the report either
    }
}

void RegisterFunctions(duk_context* context, std::span<const NativeFunction> functions) {
    for (const NativeFunction& function : functions) {
        duk_push_global_object(context);
        duk_push_c_function(context, function.entry, function.arguments);
        duk_put_prop_string(context, -2, function.name);
        duk_pop(context);
    }
}
