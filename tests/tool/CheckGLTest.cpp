#include <iterator>
#include <sstream>

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
        std::string places; // FILE:LINE:SEVERITY of each finding
        const char* text;
    } rows[] = {
        {"syntax", 1, "fx.js:4:error", "SyntaxError"},
        {"throws", 1, "fx.js:13:error fx.js:5:error fx.js:17:error fx.js:16:warning",
         "at preRender (fx.js:9)"},
        {"no-setup", 1, "fx.js:0:error", "no function setup()"},
        {"no-draw", 1, "fx.js:0:error fx.js:0:warning", "no function draw()"},
        {"mentions-prerender", 1, "fx.js:1:error fx.js:5:warning", "mentioned but not defined"},
        {"shader-error", 1, "wrong.frag:5:error", "undeclared"},
        {"inline-shader-error", 1, "fx.js:4:error", "shader \\\"made\\\", line 2: "},
        {"missing-shader", 1, "gone.frag:0:error", "not found"},
        {"missing-image", 1, "fx.js:2:error fx.js:0:error fx.js:7:warning", "frame3.png"},
        {"bad-config", 1, "config.xml:1:error", "not well-formed"},
        {"unswizzled-read", 0, "mix.frag:6:warning", "alpha, red, green, blue"},
        {"unset-uniform", 0, "scale.frag:2:warning scale.frag:3:warning fx.js:8:warning", "never set"},
        {"wrong-type", 0, "tint.frag:2:warning tint.frag:3:warning", "declare parameters first"},
        {"never-uploaded", 0, "weights.frag:2:warning weights.frag:3:warning", "is an array"},
        {"version-line", 1, "old.frag:2:warning old.frag:2:error", "#version does not come first"},
        {"one-entry-popup", 0, "fx.js:2:warning fx.js:6:warning", "counts as none"},
        {"long-label", 0, "fx.js:3:warning fx.js:6:warning", "31 characters"},
        {"leak", 0, "fx.js:6:warning", "50 render targets"},
        {"draws-nothing", 0, "fx.js:3:warning main.frag:1:warning", "draws nothing into SV_getSequenceRT()"},
        {"swapped-arguments", 0, "fx.js:5:warning fx.js:3:warning", "arguments 1 and 2 are swapped"},
        {"upside-down", 0, "fx.js:3:warning", "pass true as the third argument"},
        {"transparent", 0, "fx.js:3:warning", "fully transparent"},
        {"not-scaled", 0, "fx.js:8:warning", "half the preview resolution"},
        {"counts-frames", 0, "fx.js:3:warning", "frames that were rendered before it"},
        {"remembers-size", 0, "fx.js:6:warning", "preRender() of another frame"},
        {"shares-instances", 0, "fx.js:8:warning", "another instance"},
        {"depends-on-depth", 0, "fx.js:3:warning", "bits per channel differs"},
        {"fixed-target", 0, "fx.js:6:warning", "keeps the size of an earlier frame"},
        {"feedback", 0, "fx.js:6:warning fx.js:3:warning", "reads the render target that it draws into"},
        {"not-a-number", 0, "fx.js:3:warning", "NaN or infinite"},
        {"parameter-defaults", 0,
         "fx.js:8:warning fx.js:9:warning fx.js:10:warning fx.js:11:warning fx.js:12:warning "
         "fx.js:13:warning fx.js:14:warning fx.js:15:warning fx.js:16:warning fx.js:17:warning "
         "fx.js:18:warning",
         "looks like numbers from 0 to 1"},
        {"wrong-values", 0,
         "fx.js:4:warning fx.js:5:warning fx.js:6:warning fx.js:7:warning fx.js:11:warning fx.js:13:warning "
         "fx.js:15:warning fx.js:16:warning fx.js:17:warning fx.js:18:warning",
         "draw a texture with a shader instead"},
        {"unknown-constants", 0, "fx.js:3:warning fx.js:4:warning fx.js:8:warning", "did you mean FLOAT?"},
        {"config-settings", 0,
         "config.xml:2:warning config.xml:4:warning config.xml:5:warning config.xml:0:warning",
         "at the top level"},
        {"refused-by-hosts", 0, "config.xml:3:warning fx.js:1:warning fx.js:2:warning",
         "asks for threaded rendering"},
        {"grows-without-flag", 0, "fx.js:2:warning", "lacks 512 (0x200)"},
        {"newer-glsl", 1, "main.frag:3:error main.frag:4:warning", "write mod(x, y) with floats"},
        {"newer-glsl-bits", 1, "main.frag:3:error main.frag:4:warning", "operations on bits"},
        {"newer-glsl-round", 1, "main.frag:3:error", "write floor(x + 0.5)"},
        {"newer-glsl-uint", 1, "main.frag:3:error", "use int or float"},
        {"float-suffix", 0, "main.frag:3:warning", "others refuse it"},
        {"frag-coord", 0, "fx.js:9:warning fx.js:6:warning", "counts from the bottom"},
        {"in-and-out", 1, "main.frag:2:error main.frag:3:error main.frag:5:error", "gl_TexCoord[0].xy"},
        {"own-varying", 1, "main.frag:2:error", "in place of own varyings"},
        {"main-in-comment", 1, "main.frag:1:error", "write another word"},
        {"include", 1, "main.frag:1:error", "GLSL has no #include"},
        {"texture-function", 1, "main.frag:3:error", "write texture2D(sampler, coordinate)"},
        {"newer-javascript-let", 1, "fx.js:3:error", "write var"},
        {"newer-javascript-arrow", 1, "fx.js:3:error", "write function (x)"},
        {"newer-javascript-template", 1, "fx.js:3:error", "template strings"},
    };
    for (const auto& row : rows) {
        const std::string folder = s_Broken + row.effect + "/";
        const ToolRun run = RunTool("check --json " + folder);
        EXPECT_EQ(run.status, row.status) << row.effect << run.err;
        EXPECT_THAT(run.out, HasSubstr(row.text)) << row.effect;
        std::istringstream expected(row.places);
        const std::vector<std::string> all(std::istream_iterator<std::string>(expected), {});
        std::vector<std::string> places;
        const auto report = nlohmann::json::parse(run.out);
        for (const auto& finding : report.at(0).at("findings")) {
            const std::string file = finding.at("file");
            const std::string line = file.substr(file.starts_with(folder) ? folder.size() : 0) + ":" +
                                     finding.at("line").dump() + ":";
            places.push_back(line + std::string(finding.at("severity")));
            // A driver may report more than one error for a mistake, but only on the lines in the table.
            EXPECT_THAT(all, testing::Contains(testing::StartsWith(line))) << row.effect;
        }
        EXPECT_THAT(places, testing::IsSupersetOf(all)) << row.effect;
    }
}

TEST(CheckGLTest, ExitStatusDistinguishesWarningsAndWrongUse) {
    EXPECT_EQ(RunTool("check --strict " + s_Broken + "long-label").status, 1);
    EXPECT_EQ(RunTool("check nothing-here").status, 2);
}

TEST(CheckGLTest, EndlessLoopsAreReportedWithTheirLine) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the loop is found by a second process after the first was stopped";
#endif
    const ToolRun run = RunTool("check --frame-timeout 2 " + s_Broken + "runs-for-ever " + s_Broken +
                                "endless-pass " + s_Broken + "long-label");
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.err, AllOf(HasSubstr("runs-for-ever/fx.js:5: error: Error: this loop does not end"),
                               HasSubstr("endless-pass/main.frag:4: error: the pass of this shader does not"),
                               HasSubstr("draw"), HasSubstr("31 characters")));
    const std::string endless = " --frame-timeout 1 " + s_Broken + "endless-setup";
    const std::string picture = testing::TempDir() + "fxhost_check.png";
    for (const std::string& command : {"check" + endless, "render --size 8x8 -o " + picture + endless})
        EXPECT_THAT(RunTool(command).err,
                    HasSubstr("endless-setup/fx.js:3: error: Error: this loop does not end"));
}

TEST(CheckGLTest, RenderReportsWarningsAndPrintedText) {
    const auto render = [](const std::string& effect, const std::string& options) {
        return RunTool("render " + s_Broken + effect + " --size 8x8 -o " + testing::TempDir() +
                       "fxhost_check.png " + options);
    };
    EXPECT_THAT(render("unset-uniform", "").err,
                HasSubstr("scale.frag:3: warning: uniform \"offset\" is never set"));
    const ToolRun wrong = render("wrong-values", "");
    EXPECT_EQ(wrong.status, 0);
    EXPECT_THAT(wrong.err, AllOf(HasSubstr("fx.js:11: warning: SV_setShaderParamVal: there is no uniform"),
                                 HasSubstr("fx.js:13: warning: ")));
    EXPECT_EQ(render("wrong-values", "--strict").status, 1);
    EXPECT_EQ(render("wrong-values", "--quiet").err, "");
    EXPECT_THAT(render("draws-nothing", "").err, HasSubstr("draws nothing into SV_getSequenceRT()"));
    EXPECT_THAT(render("prints", "").err, HasSubstr("prints/fx.js:4: print: 8 {\"a\":[1]}"));
}

// A parameter of an unknown type takes an index that hosts do not have, and threads have no instance data.
TEST(CheckGLTest, RenderReportsWhatRealProgramsRefuseOnceARun) {
    const std::string command = "render " + s_Broken + "refused-by-hosts --size 8x8 --frames 1-3 -o " +
                                testing::TempDir() + "fxhost_refused_#.png --strict-host null-render-data";
    const ToolRun strict = RunTool(command);
    EXPECT_EQ(strict.status, 3);
    EXPECT_THAT(strict.err,
                HasSubstr("host: PARAMS_SETUP reported 2 parameters, but added 0 beside the input"));
    const ToolRun lenient = RunTool(command + " --allow-param-gap");
    EXPECT_EQ(lenient.status, 0) << lenient.err;
    const std::string warning = "config.xml: warning: FLAGS2 asks for threaded rendering";
    const std::size_t first = lenient.err.find(warning);
    ASSERT_NE(first, std::string::npos) << lenient.err;
    EXPECT_EQ(lenient.err.find(warning, first + 1), std::string::npos) << lenient.err;
}

TEST(CheckGLTest, BrokenEffectsAreNotPackedOrBundledUnlessForced) {
    const std::string package = testing::TempDir() + "fxhost_broken.dat",
                      bundle = testing::TempDir() + "fxhost_Broken.plugin";
    const std::string effect = s_Broken + "shader-error";
    EXPECT_EQ(RunTool("pack " + effect + " -o " + package).status, 1);
    EXPECT_EQ(RunTool("pack --force " + effect + " -o " + package).status, 0);
    EXPECT_EQ(RunTool("bundle " + effect + " -o " + bundle).status, 1);
    EXPECT_EQ(RunTool("bundle --force " + effect + " -o " + bundle).status, 0);
    const ToolRun run =
        RunTool("render --plugin " + bundle + " --size 64x64 -o " + testing::TempDir() + "fxhost_check.png");
    EXPECT_EQ(run.status, 1) << "the frame is an error picture";
    EXPECT_THAT(run.err, HasSubstr("wrong.frag:5: error: "));
}

TEST(CheckGLTest, SampleEffectsHaveNoDiagnostics) {
    const ToolRun run = RunTool("check --strict effects/*/");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
}

} // namespace
