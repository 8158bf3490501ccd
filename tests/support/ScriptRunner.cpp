#include "tests/support/ScriptRunner.h"

#include "scripting/PitchScript.h"

std::vector<ScriptError> ScriptRunner::s_Errors;

ScriptRunner::ScriptRunner() {
    s_Errors.clear();
    Scripting::ErrorCallback = [](const ScriptError& error) { s_Errors.push_back(error); };
    Scripting::Instance().Init();
}

ScriptRunner::~ScriptRunner() {
    Scripting::Instance().Release();
    Scripting::ErrorCallback = nullptr;
}

void ScriptRunner::Load(const std::string& source) {
    Scripting::Instance().Execute(PitchScript(source).c_str());
}

void ScriptRunner::Check(const std::string& script) {
    static const std::string helper = "function is(value, expected) {"
                                      " var json = function (x) { return x !== x ? 'NaN' : JSON.stringify(x,"
                                      " function (k, v) { return v !== v ? 'NaN' : v; }); };"
                                      " if (json(value) !== json(expected))"
                                      " throw new Error(json(value) + ' instead of ' + json(expected)); }\n";
    const std::size_t before = s_Errors.size();
    Load(helper + "function setup() {" + script + "}");
    for (std::size_t i = before; i < s_Errors.size(); ++i)
        ADD_FAILURE() << "line " << s_Errors[i].line - 1 << ": " << s_Errors[i].stack;
}
