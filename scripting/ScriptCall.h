#pragma once

#include <cstdint>
#include <duktape.h>
#include <initializer_list>
#include <span>
#include <string>

// What a native function gives back to the script. Plain data: nothing is owned, because pushing a value may
// unwind by longjmp.
struct ScriptResult {
    enum class Kind { Boolean, Number, Text, Array, FirstArgument };

    static ScriptResult Bool(bool value);
    static ScriptResult Number(double value);
    static ScriptResult Array(std::initializer_list<double> values); // at most 4
    static ScriptResult Text(const char* text);                      // must outlive the call
    static ScriptResult FirstArgument();                             // the script's own argument comes back

    Kind kind = Kind::Boolean;
    double numbers[4] = {};
    unsigned count = 0;
    const char* text = nullptr;
};

// One call from the script: typed access to its arguments by the interpreter's coercions, which can throw
// into the script (by longjmp) and can run script code.
class ScriptCall {
public:
    explicit ScriptCall(duk_context* context) : m_Duktape(context) {}

    int Count() const { return duk_get_top(m_Duktape); }
    bool IsGiven(int index) const { return index < Count() && !duk_is_undefined(m_Duktape, index); }

    // Integers are clamped to 32 bits; NaN and an argument that is not there are 0.
    int Int(int index) const { return index < Count() ? duk_to_int(m_Duktape, index) : 0; }
    std::uint32_t UInt(int index) const { return duk_to_uint32(m_Duktape, index); }
    std::uint32_t Handle(int index) const { return static_cast<std::uint32_t>(Int(index)); }
    double Number(int index) const { return duk_to_number(m_Duktape, index); }
    float Float(int index) const { return static_cast<float>(Number(index)); }
    bool Bool(int index) const { return duk_to_boolean(m_Duktape, index) != 0; }
    // UTF-8, alive until the call returns.
    const char* Text(int index) const { return duk_to_string(m_Duktape, index); }

    bool IsArray(int index) const { return duk_is_array(m_Duktape, index) != 0; }
    // Elements 0 to count - 1 as floats; a missing one is NaN.
    void Floats(int index, float* values, unsigned count) const;

private:
    duk_context* m_Duktape;
};

using NativeBody = ScriptResult (*)(ScriptCall& call);

// A number as a 32-bit integer, truncated toward zero; what does not fit goes to the nearest end, NaN to 0.
std::int32_t TruncateToInt(double number);

void PushResult(duk_context* context, const ScriptResult& result);

// The one way from the interpreter into a binding.
template <NativeBody Body>
duk_ret_t Trampoline(duk_context* context) {
    ScriptCall call(context);
    ScriptResult result;
    try {
        result = Body(call);
    } catch (...) { // C++ errors (no memory) must not cross the interpreter's frames
        result = ScriptResult::Bool(false);
    }
    PushResult(context, result);
    return 1;
}

// A row of a binding table.
struct NativeFunction {
    const char* name;
    duk_c_function entry;
    duk_idx_t arguments; // DUK_VARARGS for any number
};

void RegisterFunctions(duk_context* context, std::span<const NativeFunction> functions);
