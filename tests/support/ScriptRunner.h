#pragma once

#include <gtest/gtest.h>
#include <string>

#include "tests/support/ScriptErrorLog.h"

// Starts an empty interpreter and registry for each test, and collects the script errors.
class ScriptRunner : public testing::Test {
protected:
    ScriptRunner() { Scripting::Instance().Init(); }
    ~ScriptRunner() override { Scripting::Instance().Release(); }

    // Preprocesses and runs the script of an effect, as the engine does.
    static void Load(const std::string& source);
    // Runs a script that must not fail. It can use is(value, expected), see ScriptErrorLog.h.
    void Check(const std::string& script);
    // The same for a file of tests/scripting.
    void CheckFile(const std::string& name);

    ScriptErrorLog m_Log;
};
