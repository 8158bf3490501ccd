#include "scripting/Scripting.h"
#include "context/Context.h"
#include "tests/support/ScriptRunner.h"

namespace {

class ScriptingTest : public ScriptRunner {};

TEST_F(ScriptingTest, ErrorsNameTheAuthorsLineAndTheCallback) {
    Load(
        "function setup() {}\n\nfunction draw() {\n  inner();\n}\nfunction inner() {\n  absent.call();\n}\n");
    EXPECT_TRUE(s_Errors.empty());
    Scripting::Instance().Execute("draw();");
    ASSERT_EQ(s_Errors.size(), 1u);
    EXPECT_EQ(s_Errors[0].line, 7);
    EXPECT_EQ(s_Errors[0].evaluated, "draw");
    EXPECT_NE(s_Errors[0].message.find("ReferenceError"), std::string::npos);
    EXPECT_NE(s_Errors[0].stack.find("(fx.js:7)"), std::string::npos) << s_Errors[0].stack;
    EXPECT_NE(s_Errors[0].stack.find("(fx.js:4)"), std::string::npos) << s_Errors[0].stack;

    Load("var a = 1;\nvar b = ;\nfunction setup() {}");
    ASSERT_EQ(s_Errors.size(), 2u);
    EXPECT_EQ(s_Errors[1].line, 2);
    EXPECT_EQ(s_Errors[1].evaluated, "fx.js");
    EXPECT_NE(s_Errors[1].message.find("SyntaxError"), std::string::npos);
    EXPECT_NE(s_Errors[1].message.find("(line 2"), std::string::npos) << s_Errors[1].message;

    Load("popa");
    ASSERT_EQ(s_Errors.size(), 3u);
    EXPECT_EQ(s_Errors[2].line, 1);
}

TEST_F(ScriptingTest, WhateverIsThrownIsSwallowed) {
    for (const char* const thrown :
         {"undefined", "null", "'text'", "17", "{}", "Symbol()", "{ toString: function () { throw 1; } }",
          "{ get stack() { throw 2; }, get lineNumber() { throw 3; } }"})
        Load(std::string("function setup() { throw ") + thrown + "; }");
    Scripting::Instance().Execute("throw");
    Scripting::Instance().Execute("(function f() { f(); })()");
    Scripting::Instance().Execute(nullptr);
    EXPECT_EQ(s_Errors.size(), 10u);
    Check("is(1 + 1, 2);");
}

TEST_F(ScriptingTest, WhatWasMadeBeforeAThrowStaysAndGlobalsLive) {
    Load("var counter = 0; var p;\n"
         "function setup() { p = SV_initParam('x', SV_Type.FLOAT); throw new Error('half-way'); }\n"
         "function draw() { counter += 1; SV_setParamValue(p, counter); }");
    EXPECT_EQ(s_Errors.size(), 1u);
    EXPECT_EQ(Context::Current().GetNumParams(), 1u);
    for (int i = 0; i < 3; ++i)
        Scripting::Instance().Execute("draw();");
    EXPECT_EQ(Context::Current().GetParamByIdx(0).value.Float(0), 3.0f);
    Scripting::Instance().Execute("preRender(1920,1080,1);");
    Scripting::Instance().Execute("updateUIFlags();");
    EXPECT_EQ(s_Errors.size(), 1u) << "the stubs do nothing, without an error";
}

TEST_F(ScriptingTest, NothingRunsWithoutAnInterpreter) {
    Scripting::Instance().Release();
    Scripting::Instance().Execute("absent();");
    EXPECT_TRUE(s_Errors.empty());
    Scripting::Instance().Init();
    Scripting::Instance().Execute("absent();");
    EXPECT_EQ(s_Errors.size(), 1u);
}

} // namespace
