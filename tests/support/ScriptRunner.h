#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "scripting/Scripting.h"

// A fresh interpreter and registry for each test, and every script error that is heard.
class ScriptRunner : public testing::Test {
protected:
    ScriptRunner();
    ~ScriptRunner() override;

    // Runs an effect's script through the preprocessing, as the engine does.
    void Load(const std::string& source);
    // Runs text that must not fail. In it, is(value, expected) compares as JSON and names the failing line.
    void Check(const std::string& script);

    static std::vector<ScriptError> s_Errors;
};
