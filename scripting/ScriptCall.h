#pragma once

#include <cstdint>
#include <duktape.h>

// The arguments of one call from the script, read by the interpreter's own conversions. A conversion can run
// script code (valueOf, toString, getters) and can leave the native function by longjmp.
class ScriptCall {
public:
    explicit ScriptCall(duk_context* context) : m_Duktape(context) {}

    // Number of arguments: as passed for variadic functions, the declared number for others.
    int Count() const { return duk_get_top(m_Duktape); }
    bool IsGiven(int index) const { return index < Count() && !duk_is_undefined(m_Duktape, index); }

    // Truncates toward zero and clamps to 32 bits; NaN is 0.
    std::int32_t Int(int index) const { return duk_to_int(m_Duktape, index); }
    std::uint32_t UInt(int index) const { return duk_to_uint32(m_Duktape, index); }
    std::uint32_t Handle(int index) const { return static_cast<std::uint32_t>(Int(index)); }
    float Float(int index) const { return static_cast<float>(duk_to_number(m_Duktape, index)); }
    bool Bool(int index) const { return duk_to_boolean(m_Duktape, index) != 0; }
    // Zero-terminated text that is valid until the native function returns; never null.
    const char* Text(int index) const { return duk_to_string(m_Duktape, index); }

    bool IsArray(int index) const { return duk_is_array(m_Duktape, index) != 0; }
    // Reads the elements 0 to count - 1 as floats. A missing element is NaN.
    void Floats(int index, float* values, unsigned count) const;

private:
    duk_context* m_Duktape;
};
