#include "scripting/ScriptResult.h"

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

void ScriptResult::Push(duk_context* context) const {
    switch (kind) {
    case Kind::Boolean:
        duk_push_boolean(context, numbers[0] != 0.0);
        return;
    case Kind::Number:
        duk_push_number(context, numbers[0]);
        return;
    case Kind::Text:
        duk_push_string(context, text);
        return;
    case Kind::FirstArgument:
        duk_dup(context, 0);
        return;
    case Kind::Array:
        duk_push_array(context);
        for (unsigned i = 0; i < count; ++i) {
            duk_push_number(context, numbers[i]);
            duk_put_prop_index(context, -2, i);
        }
        return;
    }
}
