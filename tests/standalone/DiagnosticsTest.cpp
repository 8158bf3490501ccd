#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/diagnostics/DriverLog.h"
#include "standalone/diagnostics/ShaderErrors.h"

namespace fxhost {
void PrintTo(const LogMessage& message, std::ostream* out) {
    *out << message.string << ":" << message.line << " " << static_cast<int>(message.severity) << " "
         << message.text;
}
void PrintTo(const Diagnostic& diagnostic, std::ostream* out) {
    *out << ToText(diagnostic);
}
} // namespace fxhost

namespace {

using namespace fxhost;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto Error = Severity::Error;
constexpr auto Warning = Severity::Warning;

TEST(DriverLogTest, EachDriversFormIsRead) {
    EXPECT_THAT(ParseDriverLog("0:12(5): error: `foo' undeclared\n"
                               "0:14(10): warning: `x' used uninitialized\n"
                               "0:3(1): preprocessor error: syntax error, unexpected HASH_TOKEN\n"),
                ElementsAre(LogMessage{0, 12, Error, "`foo' undeclared"},
                            LogMessage{0, 14, Warning, "`x' used uninitialized"},
                            LogMessage{0, 3, Error, "syntax error, unexpected HASH_TOKEN"}))
        << "Mesa";
    EXPECT_THAT(ParseDriverLog("ERROR: 0:12: Use of undeclared identifier 'foo'\r\n"
                               "WARNING: 1:3: 'texture2DLod' : extension is being used\n"
                               "ERROR: 2 compilation errors.  No code generated.\n\n"),
                ElementsAre(LogMessage{0, 12, Error, "Use of undeclared identifier 'foo'"},
                            LogMessage{1, 3, Warning, "'texture2DLod' : extension is being used"}))
        << "Apple and Intel";
    EXPECT_THAT(ParseDriverLog("0(12) : error C1008: undefined variable \"foo\"\n"
                               "1(7) : warning C7050: \"c\" might be used before being initialized\n"),
                ElementsAre(LogMessage{0, 12, Error, "C1008: undefined variable \"foo\""},
                            LogMessage{1, 7, Warning, "C7050: \"c\" might be used before being initialized"}))
        << "NVIDIA";
}

TEST(DriverLogTest, LinesWithoutAPlaceAreKept) {
    EXPECT_THAT(ParseDriverLog("error: linking with uncompiled/unspecialized shader"),
                ElementsAre(LogMessage{0, 0, Error, "linking with uncompiled/unspecialized shader"}));
    EXPECT_THAT(ParseDriverLog("something odd\n  went on\n"),
                ElementsAre(LogMessage{0, 0, Error, "something odd   went on"}));
    EXPECT_THAT(ParseDriverLog("0(1) : error C0000: syntax error\nat token \"}\"\n"),
                ElementsAre(LogMessage{0, 1, Error, "C0000: syntax error at token \"}\""}));
    EXPECT_THAT(ParseDriverLog("0:99999999999999999999(1): error: far\n"),
                ElementsAre(LogMessage{0, 0, Error, "far"}));
    EXPECT_THAT(ParseDriverLog(""), IsEmpty());
}

// The author's text has ten lines; rewriting put two in front, and the preamble has two more.
ShaderOrigin Known(const std::string& name) {
    return {"fx/" + name + ".frag", name == "lost", 10, 2};
}

TEST(ShaderErrorsTest, LinesAreTheAuthors) {
    EXPECT_THAT(ShaderDiagnostics("Shader \"a\"\nShader compilation failed:\n0:9(5): error: glued strings\n"
                                  "1(7) : error C1: counted strings\n\n"
                                  "Shader \"b\"\nProgram linking failed:\nERROR: 0:4: in the wrappers\n"
                                  "ERROR: 0:15: behind the end\nERROR: 0:14: `repl_main' at the end\n\n",
                                  Known),
                ElementsAre(Diagnostic{"fx/a.frag", 5, Error, "glued strings", {}},
                            Diagnostic{"fx/a.frag", 5, Error, "C1: counted strings", {}},
                            Diagnostic{"fx/b.frag", 0, Error, "in the wrappers", {}},
                            Diagnostic{"fx/b.frag", 0, Error, "behind the end", {}},
                            Diagnostic{"fx/b.frag", 10, Error, "`main' at the end", {}}));
}

TEST(ShaderErrorsTest, MissingFilesAndEmptyLogsAreToldInWords) {
    EXPECT_THAT(
        ShaderDiagnostics("Shader \"lost\"\nShader compilation failed:\n0:3(1): error: popa\n\n", Known),
        ElementsAre(Diagnostic{"fx/lost.frag", 0, Error, "shader file not found", {}}));
    EXPECT_THAT(
        ShaderDiagnostics("Shader \"a\"\nProgram linking failed:\n\n", Known),
        ElementsAre(Diagnostic{"fx/a.frag", 0, Error, "refused by the driver, which gives no reason", {}}));
    EXPECT_THAT(ShaderDiagnostics("", Known), IsEmpty());
}

TEST(DiagnosticTest, TextIsWhatEditorsRead) {
    EXPECT_EQ(ToText({"a/fx.js", 3, Error, "boom", {"at draw (a/fx.js:3)"}}),
              "a/fx.js:3: error: boom\n    at draw (a/fx.js:3)");
    EXPECT_EQ(ToText({"a.frag", 0, Warning, "odd", {}}), "a.frag: warning: odd");
}

} // namespace
