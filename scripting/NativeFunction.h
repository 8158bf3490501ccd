#pragma once

#include <cstddef>
#include <duktape.h>
#include <span>
#include <tuple>
#include <utility>

#include "scripting/ArgumentKinds.h"
#include "scripting/ScriptResult.h"

// The value that a native function returns when it refuses its arguments.
enum class Refusal { False, Zero, NotAShader };

ScriptResult ResultOf(Refusal refusal);

// One row of a table of native functions.
struct NativeFunction {
    const char* name;
    duk_c_function entry;
    duk_idx_t arguments; // DUK_VARARGS for any number
};

// Reports the current exception of a native function as a script error, for tools. The script gets false
// instead.
void ReportNativeException() noexcept;

// Installs the functions in the interpreter's global object.
void RegisterFunctions(duk_context* context, std::span<const NativeFunction> functions);

// Reads, checks and looks up the arguments, then calls the body with them.
template <auto Body, Refusal OnRefusal, class... Kinds, std::size_t... Index>
ScriptResult CallBody(const ScriptCall& call, std::index_sequence<Index...>) {
    if (!(Kinds::IsPassed(call, static_cast<int>(Index)) && ...))
        return ResultOf(OnRefusal);
    // Braces evaluate from left to right, which is the order in which scripts expect conversions.
    const std::tuple<typename Kinds::Raw...> raw{Kinds::Read(call, static_cast<int>(Index))...};
    [[maybe_unused]] auto resolved = std::make_tuple(Kinds::Resolve(std::get<Index>(raw))...);
    if (!(Kinds::Accepts(std::get<Index>(resolved)) && ...))
        return ResultOf(OnRefusal);
    return Body(Kinds::Pass(std::get<Index>(resolved))...);
}

// The only way from the interpreter into a native function's body.
template <auto Body, Refusal OnRefusal, class... Kinds>
duk_ret_t Trampoline(duk_context* context) {
    ScriptResult result;
    try {
        result =
            CallBody<Body, OnRefusal, Kinds...>(ScriptCall(context), std::index_sequence_for<Kinds...>());
    } catch (...) { // C++ exceptions (out of memory) must not cross the interpreter's frames
        ReportNativeException();
        result = ScriptResult::Bool(false);
    }
    result.Push(context);
    return 1;
}

// Makes a row: the function's name in scripts, its body, its answer to wrong arguments, and their kinds.
template <auto Body, Refusal OnRefusal, class... Kinds>
constexpr NativeFunction Native(const char* name) {
    constexpr bool isVariadic = (Kinds::isVariadic || ...);
    return {name, Trampoline<Body, OnRefusal, Kinds...>,
            isVariadic ? DUK_VARARGS : static_cast<duk_idx_t>(sizeof...(Kinds))};
}
