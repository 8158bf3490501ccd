#include "scripting/ScriptCall.h"

#include <algorithm>
#include <cmath>
#include <limits>

ScriptResult ScriptResult::Bool(bool value) {
    ScriptResult result;
    result.numbers[0] = value ? 1.0 : 0.0;
    return result;
}

ScriptResult ScriptResult::Number(double value) {
    ScriptResult result;
    result.kind = Kind::Number;
    result.numbers[0] = value;
    return result;
}

ScriptResult ScriptResult::Array(std::initializer_list<double> values) {
    ScriptResult result;
    result.kind = Kind::Array;
    for (const double value : values)
        result.numbers[result.count++] = value;
    return result;
}

ScriptResult ScriptResult::Text(const char* text) {
    ScriptResult result;
    result.kind = Kind::Text;
    result.text = text;
    return result;
}

ScriptResult ScriptResult::FirstArgument() {
    ScriptResult result;
    result.kind = Kind::FirstArgument;
    return result;
}

void ScriptCall::Floats(int index, float* values, unsigned count) const {
    for (unsigned i = 0; i < count; ++i) {
        duk_get_prop_index(m_Duktape, index, i);
        values[i] = static_cast<float>(duk_to_number(m_Duktape, -1));
        duk_pop(m_Duktape);
    }
}

std::int32_t TruncateToInt(double number) {
    if (std::isnan(number))
        return 0;
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(number, lowest, highest));
}

void PushResult(duk_context* context, const ScriptResult& result) {
    switch (result.kind) {
    case ScriptResult::Kind::Boolean:
        duk_push_boolean(context, result.numbers[0] != 0.0);
        return;
    case ScriptResult::Kind::Number:
        duk_push_number(context, result.numbers[0]);
        return;
    case ScriptResult::Kind::Text:
        duk_push_string(context, result.text);
        return;
    case ScriptResult::Kind::FirstArgument:
        duk_dup(context, 0);
        return;
    case ScriptResult::Kind::Array:
        duk_push_array(context);
        for (unsigned i = 0; i < result.count; ++i) {
            duk_push_number(context, result.numbers[i]);
            duk_put_prop_index(context, -2, i);
        }
        return;
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
