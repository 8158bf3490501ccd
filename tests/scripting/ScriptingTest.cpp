#include "scripting/Scripting.h"
#include "context/Context.h"
#include "tests/support/ScriptRunner.h"

namespace {

class ScriptingTest : public ScriptRunner {};

TEST_F(ScriptingTest, ErrorsNameTheAuthorsLineAndTheCallback) {
    Load(
        "function setup() {}\n\nfunction draw() {\n  inner();\n}\nfunction inner() {\n  absent.call();\n}\n");
    Scripting::Instance().Execute("draw();");
    Load("var a = 1;\nvar b = ;\nfunction setup() {}");
    Load("popa");
    const struct {
        int line;
        const char *evaluated, *message, *stack;
    } rows[] = {{7, "draw", "ReferenceError", "(fx.js:7)"},
                {2, "fx.js", "(line 2", "SyntaxError"},
                {1, "fx.js", "ReferenceError", "(fx.js:1)"}};
    ASSERT_EQ(s_Errors.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(s_Errors[i].line, rows[i].line);
        EXPECT_EQ(s_Errors[i].evaluated, rows[i].evaluated);
        EXPECT_NE(s_Errors[i].message.find(rows[i].message), std::string::npos) << s_Errors[i].message;
        EXPECT_NE(s_Errors[i].stack.find(rows[i].stack), std::string::npos) << s_Errors[i].stack;
    }
    EXPECT_NE(s_Errors[0].stack.find("(fx.js:4)"), std::string::npos) << "the caller: " << s_Errors[0].stack;
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
    for (const char* const call : {"draw();", "draw();", "preRender(1920,1080,1);", "updateUIFlags();"})
        Scripting::Instance().Execute(call);
    EXPECT_EQ(Context::Current().GetParamByIdx(0).value.Float(0), 2.0f);
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
