#include <cstdlib>

#include "tests/support/RunTool.h"
#include "tests/support/TestFiles.h"

namespace {

using testing::HasSubstr;

constexpr int s_RanAway = 4;
const std::string s_Loop = "while (true) {}";
// Seconds in which everything but an endless callback ends.
#ifdef __SANITIZE_THREAD__
const std::string s_Limit = "20";
#else
const std::string s_Limit = "2";
#endif

// An effect whose callbacks contain only the statements of a test.
class GuardGLTest : public FolderTest {
protected:
    struct Callbacks {
        std::string setup, preRender, updateUIFlags, draw;
    };

    void writeEffect(const Callbacks& callbacks,
                     const std::string& shader = "gl_FragColor = vec4(1.0);") const {
        writeFile("fx/config.xml", "<FXNAME>wild</FXNAME>");
        writeFile("fx/flat.frag", "void main() { " + shader + " }");
        writeFile("fx/fx.js", "var flat; function setup() { flat = SV_initShader('flat'); " +
                                  callbacks.setup + " }\nfunction preRender(w, h) { " + callbacks.preRender +
                                  " }\nfunction updateUIFlags() { " + callbacks.updateUIFlags +
                                  " }\nfunction draw() { " + callbacks.draw +
                                  " SV_renderShader(flat, SV_getSequenceRT(), 0, 1); }");
    }
};

TEST_F(GuardGLTest, EndlessCallbacksAndShadersAreStoppedAndReportedWithTheirStage) {
    const std::string grow = "var all = []; while (true) { all.push(new Uint8Array(1 << 20)); }";
    // The software driver leaves loops after about 65000 iterations, so a large frame makes the shader slow.
    const std::string shader =
        "vec4 sum = vec4(0.5); for (int i = 0; i < 60000; ++i)"
        " sum = fract(sin(pow(sum + 0.1, vec4(1.7))) * gl_FragCoord.x); gl_FragColor = sum;";
    const std::string out = " -o " + at("out.png"), timeout = " --frame-timeout " + s_Limit;
    const std::string render = "render --size 64x48" + timeout + out,
                      noEnd = ": no end after " + s_Limit + " s";
    const struct {
        std::string command;
        Callbacks callbacks;
        std::string shader, message;
    } rows[] = {
        {render, {s_Loop, "", "", ""}, "", "setup" + noEnd},
        {render, {"", s_Loop, "", ""}, "", "preRender" + noEnd},
        {"check" + timeout, {"", "", s_Loop, ""}, "", "frame 0, updateUIFlags" + noEnd},
        {render, {"", "", "", s_Loop}, "", "draw" + noEnd},
        {"render --size 8192x8192" + timeout + out, {}, shader, "(draw|read-back)" + noEnd},
        {"render --size 64x48 --memory-limit 150M" + out,
         {"", "", "", grow},
         "",
         "draw: the work needs more memory"},
    };
    for (const auto& row : rows) {
        writeEffect(row.callbacks, row.shader);
        const ToolRun run = RunTool(row.command + " " + at("fx"));
        EXPECT_EQ(run.status, s_RanAway) << row.message << "\n" << run.err;
        EXPECT_THAT(run.err, testing::ContainsRegex(at("fx: ") + row.message));
    }
    EXPECT_FALSE(exists("out.png"));
}

TEST_F(GuardGLTest, CrashIsReportedWithItsSignal) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "a crash is only reported by the parent of a forked process";
#endif
    writeEffect({"", "", "", s_Loop});
    // Sanitizers would handle the signal themselves.
    const std::string command = "ASAN_OPTIONS=handle_segv=0 TSAN_OPTIONS=handle_segv=0 " FX_TOOL " render " +
                                at("fx") + " --size 8x8 -o " + at("out.png") + " 2>" + at("messages") +
                                " & tool=$!; until child=$(pgrep -P $tool); do sleep 0.1; done; sleep 2; "
                                "kill -SEGV $child; wait $tool";
    const int status = std::system(command.c_str());
    EXPECT_EQ(WEXITSTATUS(status), s_RanAway);
    EXPECT_THAT(bytes("messages"), HasSubstr("draw: crashed with signal 11 (Segmentation fault)"));
}

} // namespace
