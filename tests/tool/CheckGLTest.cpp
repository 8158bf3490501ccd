#include <nlohmann/json.hpp>

#include "tests/support/RunTool.h"
#include "tests/support/TestFiles.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

const std::string s_Broken = "tests/effects/broken/";

TEST(CheckGLTest, EveryMistakeIsReportedOnItsLine) {
    const struct {
        std::string effect;
        int status;
        std::vector<std::string> places; // FILE:LINE:SEVERITY
        const char* text;
    } rows[] = {
        {"syntax", 1, {"fx.js:4:error"}, "SyntaxError"},
        {"throws", 1, {"fx.js:13:error", "fx.js:5:error", "fx.js:17:error"}, "at preRender (fx.js:9)"},
        {"no-setup", 1, {"fx.js:0:error"}, "no function setup()"},
        {"no-draw", 1, {"fx.js:0:error"}, "no function draw()"},
        {"mentions-prerender", 1, {"fx.js:1:error"}, "mentioned but not defined"},
        {"shader-error", 1, {"wrong.frag:5:error"}, "undeclared"},
        {"inline-shader-error", 1, {"fx.js:4:error"}, "shader \\\"made\\\", line 2: "},
        {"missing-shader", 1, {"gone.frag:0:error"}, "not found"},
        {"missing-image", 1, {"fx.js:2:error", "fx.js:0:error"}, "frame3.png"},
        {"bad-config", 1, {"config.xml:1:error"}, "not well-formed"},
        {"unswizzled-read", 0, {"mix.frag:6:warning"}, "alpha, red, green, blue"},
        {"unset-uniform", 0, {"scale.frag:2:warning", "scale.frag:3:warning"}, "never set"},
        {"wrong-type", 0, {"tint.frag:2:warning", "tint.frag:3:warning"}, "declare parameters first"},
        {"never-uploaded", 0, {"weights.frag:2:warning", "weights.frag:3:warning"}, "is an array"},
        {"version-line", 1, {"old.frag:2:warning"}, "#version does not come first"},
        {"one-entry-popup", 0, {"fx.js:2:warning"}, "counts as none"},
        {"long-label", 0, {"fx.js:3:warning"}, "31 characters"},
        {"leak", 0, {"fx.js:6:warning"}, "50 render targets"},
    };
    for (const auto& row : rows) {
        const std::string folder = s_Broken + row.effect + "/";
        const ToolRun run = RunTool("check --json " + folder);
        EXPECT_EQ(run.status, row.status) << row.effect << run.err;
        EXPECT_THAT(run.out, HasSubstr(row.text)) << row.effect;
        std::vector<std::string> places;
        const auto report = nlohmann::json::parse(run.out);
        for (const auto& finding : report.at(0).at("findings")) {
            const std::string file = finding.at("file");
            const std::string line = file.substr(file.starts_with(folder) ? folder.size() : 0) + ":" +
                                     finding.at("line").dump() + ":";
            places.push_back(line + std::string(finding.at("severity")));
            // A driver may report more than one error for a mistake, but only on the lines in the table.
            EXPECT_THAT(row.places, testing::Contains(testing::StartsWith(line))) << row.effect;
        }
        EXPECT_THAT(places, testing::IsSupersetOf(row.places)) << row.effect;
    }
}

TEST(CheckGLTest, ExitStatusDistinguishesWarningsWrongUseAndTimeouts) {
    EXPECT_EQ(RunTool("check --strict " + s_Broken + "long-label").status, 1);
    EXPECT_EQ(RunTool("check nothing-here").status, 2);
    const ToolRun run =
        RunTool("check --frame-timeout 2 " + s_Broken + "runs-for-ever " + s_Broken + "long-label");
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.err, AllOf(HasSubstr("runs-for-ever"), HasSubstr("draw"), HasSubstr("31 characters")));
}

TEST(CheckGLTest, SampleEffectsHaveNoDiagnostics) {
    const ToolRun run = RunTool("check --strict effects/*/");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
}

} // namespace
