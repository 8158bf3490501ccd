#include "scripting/Scripting.h"
#include "context/Context.h"
#include "tests/support/ScriptRunner.h"

namespace {

class ScriptingTest : public ScriptRunner {};

TEST_F(ScriptingTest, ErrorsReportTheAuthorsLineAndTheCallback) {
    Load(R"js(function setup() {}

function draw() {
  inner();
}
function inner() {
  absent.call();
})js");
    Scripting::Instance().Execute("draw();");
    Load("var a = 1;\nvar b = ;\nfunction setup() {}");
    Load("popa");
    const struct {
        int line;
        const char *evaluated, *message, *stack;
    } rows[] = {{7, "draw", "ReferenceError", "(fx.js:7)"},
                {2, "fx.js", "(line 2", "SyntaxError"},
                {1, "fx.js", "ReferenceError", "(fx.js:1)"}};
    ASSERT_EQ(m_Log.Errors().size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(m_Log.Errors()[i].line, rows[i].line);
        EXPECT_EQ(m_Log.Errors()[i].evaluated, rows[i].evaluated);
        EXPECT_NE(m_Log.Errors()[i].message.find(rows[i].message), std::string::npos)
            << m_Log.Errors()[i].message;
        EXPECT_NE(m_Log.Errors()[i].stack.find(rows[i].stack), std::string::npos) << m_Log.Errors()[i].stack;
    }
    EXPECT_NE(m_Log.Errors()[0].stack.find("(fx.js:4)"), std::string::npos)
        << "the caller: " << m_Log.Errors()[0].stack;
}

TEST_F(ScriptingTest, PrintedTextArrivesWithTheAuthorsLineAndIsIgnoredWithoutAListener) {
    static std::vector<std::string> printed;
    printed.clear();
    Scripting::PrintCallback = [](const ScriptMessage& message) {
        printed.push_back(std::to_string(message.line) + ": " + message.text);
    };
    Load(R"js(function setup() {
    print("size", 3, [1, 2], { a: null }, undefined, setup.name);
    [4].forEach(console.log);

    console.warn({ toJSON: function () { throw 1; }, toString: function () { throw "no text"; } });
})js");
    Scripting::Instance().Execute("eval('print()'); console.error();");
    Scripting::PrintCallback = nullptr;
    Load("function setup() { print({ toString: function () { throw 1; } }); }");
    const std::vector<std::string> expected = {"2: size 3 [1,2] {\"a\":null} undefined setup", "3: 4 0 [4]",
                                               "5: no text", "0: ", "0: "};
    EXPECT_EQ(printed, expected);
    EXPECT_EQ(m_Log.Text(), "");
}

// Each message has words that look like positions, in a script whose lines are all below 10.
TEST_F(ScriptingTest, PositionsInTheAuthorsOwnMessagesStayAsTheyAre) {
    const struct {
        const char *name, *thrown, *message, *calls;
    } rows[] = {
        {"an error", "new Error('see (line 70) and (eval:80)')", "Error: see (line 70) and (eval:80)",
         "(fx.js:1)"},
        {"a syntax error", "new SyntaxError('in (line 70)')", "SyntaxError: in (line 70)", "(fx.js:1)"},
        {"a message like a traceback", "new Error('a\\n    at f (eval:90)')", "Error: a\n    at f (eval:90)",
         "(fx.js:1)"},
        {"a text", "'lost (line 70)'", "lost (line 70)", ""},
        {"text that the script evaluates", "eval('\\n\\n\\nvar = 1')",
         "SyntaxError: invalid variable declaration (line 4)", "(fx.js:1)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::size_t before = m_Log.Errors().size();
        Load("function setup() { throw " + std::string(row.thrown) + "; }");
        ASSERT_EQ(m_Log.Errors().size(), before + 1);
        const ScriptError& error = m_Log.Errors().back();
        EXPECT_EQ(error.message, row.message);
        EXPECT_EQ(error.stack.find(row.message), 0u) << error.stack;
        EXPECT_NE(error.stack.find(row.calls), std::string::npos) << error.stack;
        EXPECT_EQ(error.line, *row.calls ? 1 : 0);
    }
}

TEST_F(ScriptingTest, ThrownValuesOfEveryTypeAreCaught) {
    for (const char* const thrown :
         {"undefined", "null", "'text'", "17", "{}", "Symbol()", "{ toString: function () { throw 1; } }",
          "{ get stack() { throw 2; }, get lineNumber() { throw 3; } }"})
        Load(std::string("function setup() { throw ") + thrown + "; }");
    Scripting::Instance().Execute("throw");
    Scripting::Instance().Execute("(function f() { f(); })()");
    Scripting::Instance().Execute(nullptr);
    EXPECT_EQ(m_Log.Errors().size(), 10u);
    Check("is(1 + 1, 2);");
}

TEST_F(ScriptingTest, ResourcesMadeBeforeAThrowRemainAndGlobalsPersist) {
    Load(R"js(
        var counter = 0, p;
        function setup() { p = SV_initParam("x", SV_Type.FLOAT); throw new Error("half-way"); }
        function draw() { counter += 1; SV_setParamValue(p, counter); }
    )js");
    EXPECT_EQ(m_Log.Errors().size(), 1u);
    for (const char* const call : {"draw();", "draw();", "preRender(1920,1080,1);", "updateUIFlags();"})
        Scripting::Instance().Execute(call);
    EXPECT_EQ(Context::Current().GetParamByIdx(0).value.Float(0), 2.0f);
    EXPECT_EQ(m_Log.Errors().size(), 1u) << "the callbacks that were added do nothing";
}

TEST_F(ScriptingTest, ExecuteWithoutAnInterpreterDoesNothing) {
    Scripting::Instance().Release();
    Scripting::Instance().Execute("absent();");
    EXPECT_TRUE(m_Log.Errors().empty());
    Scripting::Instance().Init();
    Scripting::Instance().Execute("absent();");
    EXPECT_EQ(m_Log.Errors().size(), 1u);
}

} // namespace
