#pragma once

#include <cstdint>
#include <duktape.h>
#include <initializer_list>

// The value that a native function returns to the script. It is plain data and owns nothing, because pushing
// it can leave the function by longjmp when the interpreter is out of memory.
struct ScriptResult {
    enum class Kind { Boolean, Number, Text, Array, FirstArgument };

    static ScriptResult Bool(bool value);
    static ScriptResult Number(double value);
    static ScriptResult Array(std::initializer_list<double> values); // at most 4
    static ScriptResult Text(const char* text);                      // must outlive the native function
    static ScriptResult FirstArgument(); // returns the first argument as it is after its conversion

    // Pushes the value onto the interpreter's stack.
    void Push(duk_context* context) const;

    Kind kind = Kind::Boolean;
    double numbers[4] = {};
    unsigned count = 0;
    const char* text = nullptr;
};
