#include "tests/support/ScriptRunner.h"

#include <fstream>
#include <iterator>

#include "scripting/PitchScript.h"

void ScriptRunner::Load(const std::string& source) {
    Scripting::Instance().Execute(PitchScript(source).c_str());
}

void ScriptRunner::Check(const std::string& script) {
    const std::size_t before = m_Log.Errors().size();
    Load(s_DefineIs + "function setup() {" + script + "}");
    for (std::size_t i = before; i < m_Log.Errors().size(); ++i)
        ADD_FAILURE() << "line " << m_Log.Errors()[i].line - 1 << ": " << m_Log.Errors()[i].stack;
}

void ScriptRunner::CheckFile(const std::string& name) {
    SCOPED_TRACE(name);
    std::ifstream file("tests/scripting/" + name);
    const std::string script{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_FALSE(script.empty()) << "run from the source folder";
    Check(script);
}
