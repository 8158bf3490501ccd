#pragma once

#include <string>
#include <vector>

#include "scripting/Scripting.h"

// Collects all script errors while it exists. There can be only one at a time.
class ScriptErrorLog {
public:
    ScriptErrorLog() {
        s_Errors.clear();
        Scripting::ErrorCallback = [](const ScriptError& error) { s_Errors.push_back(error); };
    }
    ~ScriptErrorLog() { Scripting::ErrorCallback = nullptr; }
    ScriptErrorLog(const ScriptErrorLog&) = delete;
    ScriptErrorLog& operator=(const ScriptErrorLog&) = delete;

    const std::vector<ScriptError>& Errors() const { return s_Errors; }
    // The tracebacks of all errors, empty when there are none.
    std::string Text() const {
        std::string text;
        for (const ScriptError& error : s_Errors)
            text += error.stack + "\n";
        return text;
    }

private:
    static inline std::vector<ScriptError> s_Errors;
};

// Defines is(value, expected) in a script, on one line: it compares both as JSON, in which NaN is "NaN", and
// throws an error that shows both when they differ.
inline const std::string s_DefineIs = "function is(value, expected) {"
                                      " var json = function (x) { return x !== x ? 'NaN' : JSON.stringify(x,"
                                      " function (k, v) { return v !== v ? 'NaN' : v; }); };"
                                      " if (json(value) !== json(expected))"
                                      " throw new Error(json(value) + ' instead of ' + json(expected)); }\n";
