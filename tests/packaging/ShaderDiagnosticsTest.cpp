#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packaging/ShaderDiagnostics.h"
#include "packaging/ShaderLog.h"

namespace {

using namespace fxhost;
using testing::ElementsAre;
using Texts = std::vector<std::string>;

TEST(ShaderLogTest, MessagesOfEveryDriverAreParsed) {
    const struct {
        const char *driver, *log;
        Texts messages; // in the form "STRING:LINE: severity: text"
    } rows[] = {
        {"Mesa",
         "0:12(5): error: `foo' undeclared\n0:14(10): warning: `x' used uninitialized\n"
         "0:3(1): preprocessor error: unexpected HASH_TOKEN\n0:99999999999999999999(1): error: far\n",
         {"0:12: error: `foo' undeclared", "0:14: warning: `x' used uninitialized",
          "0:3: error: unexpected HASH_TOKEN", "0: error: far"}},
        {"Apple and Intel",
         "ERROR: 0:12: Use of undeclared identifier 'foo'\r\nWARNING: 1:3: 'texture2DLod' : extension\n"
         "ERROR: 2 compilation errors.  No code generated.\n\n",
         {"0:12: error: Use of undeclared identifier 'foo'", "1:3: warning: 'texture2DLod' : extension"}},
        {"NVIDIA",
         "0(12) : error C1008: undefined variable \"foo\"\n1(7) : warning C7050: \"c\" might be used\n"
         "0(1) : error C0000: syntax error\nat token \"}\"\n",
         {"0:12: error: C1008: undefined variable \"foo\"", "1:7: warning: C7050: \"c\" might be used",
          "0:1: error: C0000: syntax error at token \"}\""}},
        {"no place",
         "error: linking with an uncompiled shader",
         {"0: error: linking with an uncompiled shader"}},
        {"no form", "something odd\n  went on\n", {"0: error: something odd   went on"}},
        {"silent", "", {}},
    };
    for (const auto& row : rows) {
        Texts texts;
        for (const LogMessage& message : ParseShaderLog(row.log))
            texts.push_back(
                ToText({std::to_string(message.string), message.line, message.severity, message.text, {}}));
        EXPECT_EQ(texts, row.messages) << row.driver;
    }
}

// The author's text has ten lines; rewriting inserts two lines before it, and the preamble has two more.
TEST(ShaderDiagnosticsTest, LineNumbersAreThoseOfTheAuthorsFile) {
    const char* log = "Shader \"a\"\nShader compilation failed:\n0:9(5): error: glued strings\n"
                      "1(7) : error C1: counted strings\n\n"
                      "Shader \"b\"\nProgram linking failed:\nERROR: 0:4: in the wrappers\n"
                      "ERROR: 0:15: behind the end\nERROR: 0:14: `repl_main' at the end\n\n"
                      "Shader \"lost\"\nShader compilation failed:\n0:3(1): error: popa\n\n"
                      "Shader \"mute\"\nProgram linking failed:\n\n";
    Texts texts;
    for (const Diagnostic& found : ShaderDiagnostics(log, [](const std::string& name) {
             ShaderOrigin origin;
             origin.file = "fx/" + name + ".frag";
             origin.missing = name == "lost";
             origin.lines = 10;
             origin.linesInFront = 2;
             return origin;
         }))
        texts.push_back(ToText(found));
    EXPECT_THAT(texts,
                ElementsAre("fx/a.frag:5: error: glued strings", "fx/a.frag:5: error: C1: counted strings",
                            "fx/b.frag: error: in the wrappers", "fx/b.frag: error: behind the end",
                            "fx/b.frag:10: error: `main' at the end",
                            "fx/lost.frag: error: shader file not found",
                            "fx/mute.frag: error: refused by the driver, which gives no reason"));
}

} // namespace
