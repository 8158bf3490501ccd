#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/standalone/RunTool.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
namespace fs = std::filesystem;

constexpr int s_RanAway = 4;

// An effect in a folder of its own, whose callbacks do nothing but what a test puts there.
class GuardGLTest : public testing::Test {
protected:
    struct Callbacks {
        std::string setup, preRender, updateUIFlags, draw;
    };

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(m_Folder + "/" + name) << text;
    }
    void writeEffect(const Callbacks& callbacks) const {
        const auto function = [](const std::string& head, const std::string& body) {
            return "function " + head + " {\n    " + body + "\n}\n";
        };
        write("fx/config.xml", "<FXNAME>wild</FXNAME>\n");
        write("fx/fx.js",
              "var copy;\n" + function("setup()", "copy = SV_initShader(\"copy\");\n    " + callbacks.setup) +
                  function("preRender(w, h)", callbacks.preRender) +
                  function("updateUIFlags()", callbacks.updateUIFlags) +
                  function("draw()", callbacks.draw +
                                         "\n    var size = SV_getSurfaceDim(SV_getSequenceRT());\n"
                                         "    SV_renderShader(copy, SV_getSequenceRT(), 0, 1);"));
        write("fx/copy.frag", m_Shader);
    }
    ToolRun render(const std::string& options = "", const std::string& size = "64x48") const {
        return RunTool("render " + m_Folder + "/fx --size " + size + " -o " + m_Folder + "/out.png " +
                       options);
    }

    GuardGLTest() { fs::create_directory(m_Folder + "/fx"); }
    ~GuardGLTest() override { fs::remove_all(m_Folder); }

    const std::string m_Folder = FreshFolder();
    std::string m_Shader = "void main() {\n    gl_FragColor = vec4(1.0, 0.5, 0.25, 1.0);\n}\n";
};

TEST_F(GuardGLTest, TamePicturesAreRendered) {
    writeEffect({});
    const ToolRun run = render();
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(fs::exists(m_Folder + "/out.png"));
}

TEST_F(GuardGLTest, ALoopInEachCallbackIsToldWithItsStage) {
    const std::string loop = "while (true) {}";
    const struct {
        const char* stage;
        Callbacks callbacks;
        bool check; // render never asks for the flags
    } rows[] = {{"setup", {loop, "", "", ""}, false},
                {"preRender", {"", loop, "", ""}, false},
                {"updateUIFlags", {"", "", loop, ""}, true},
                {"draw", {"", "", "", loop}, false}};
    for (const auto& row : rows) {
        writeEffect(row.callbacks);
        const ToolRun run =
            row.check ? RunTool("check --frame-timeout 1 " + m_Folder + "/fx") : render("--frame-timeout 1");
        EXPECT_EQ(run.status, s_RanAway) << row.stage;
        EXPECT_THAT(run.err,
                    AllOf(HasSubstr(m_Folder + "/fx: "),
                          HasSubstr(std::string(row.stage) + ": no end after 1 s (--frame-timeout)")));
    }
    EXPECT_FALSE(fs::exists(m_Folder + "/out.png"));
}

// Software GL leaves loops after some 65000 rounds, so the work is made endless by its size.
TEST_F(GuardGLTest, AShaderThatNeverEndsIsStopped) {
    m_Shader = "void main() {\n    float sum = 0.5;\n    for (int i = 0; i < 60000; ++i)\n"
               "        sum = fract(sin(pow(sum + 0.1, 1.7)) * gl_FragCoord.x);\n"
               "    gl_FragColor = vec4(sum);\n}\n";
    writeEffect({});
    const ToolRun run = render("--frame-timeout 2", "8192x8192");
    EXPECT_EQ(run.status, s_RanAway);
    EXPECT_THAT(run.err, testing::AnyOf(HasSubstr("draw: no end after 2 s"),
                                        HasSubstr("read-back: no end after 2 s")));
}

TEST_F(GuardGLTest, MemoryThatGrowsWithoutEndIsStopped) {
    const std::string grow = "var all = []; while (true) { all.push(new Uint8Array(1 << 20)); }";
    for (const auto& callbacks : {Callbacks{grow, "", "", ""}, Callbacks{"", "", "", grow}}) {
        writeEffect(callbacks);
        const ToolRun run = render("--memory-limit 600M");
        EXPECT_EQ(run.status, s_RanAway) << run.err;
        EXPECT_THAT(run.err, AllOf(HasSubstr(callbacks.draw.empty() ? "setup: " : "draw: "),
                                   HasSubstr("more memory than it may take (--memory-limit)")));
    }
}

TEST_F(GuardGLTest, ACrashIsTold) {
    writeEffect({"", "", "", "while (true) {}"});
    const std::string output = m_Folder + "/said";
    // Sanitizers would catch the signal themselves.
    const std::string command =
        std::string("ASAN_OPTIONS=handle_segv=0 TSAN_OPTIONS=handle_segv=0 " FX_TOOL " render ") + m_Folder +
        "/fx --size 8x8 -o " + m_Folder + "/out.png 2>" + output +
        " & tool=$!; until child=$(pgrep -P $tool); do sleep 0.1; done; sleep 2; "
        "kill -SEGV $child; wait $tool";
    const int status = std::system(command.c_str());
    EXPECT_EQ(WEXITSTATUS(status), s_RanAway);
    EXPECT_THAT(ReadFileText(output), HasSubstr("draw: crashed with signal 11 (Segmentation fault)"));
}

TEST_F(GuardGLTest, FramesBeforeTheRunawayOneAreKept) {
    writeEffect({"", "", "", "while (SV_getTime() > 0.45) {}"});
    const std::string clip =
        "render " + m_Folder + "/fx --size 64x48 --frames 1-9 --fps 10 -o " + m_Folder + "/out_#.png";
    const ToolRun run = RunTool(clip + " --frame-timeout 1");
    EXPECT_EQ(run.status, s_RanAway);
    EXPECT_THAT(run.err, AllOf(HasSubstr("/fx: frame 6, draw: no end after 1 s"),
                               HasSubstr("5 of 9 frames are written; --resume goes on after them")));
    EXPECT_TRUE(fs::exists(m_Folder + "/out_5.png"));
    EXPECT_FALSE(fs::exists(m_Folder + "/out_6.png"));
    writeEffect({});
    EXPECT_EQ(RunTool(clip + " --resume").status, 0);
    EXPECT_TRUE(fs::exists(m_Folder + "/out_9.png"));
}

} // namespace
