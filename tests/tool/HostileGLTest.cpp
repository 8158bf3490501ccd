#include <filesystem>
#include <map>

#include "tests/support/RunTool.h"
#include "tests/support/TestFiles.h"

namespace {

using testing::HasSubstr;

// Effects whose frame is right have no error; the others name the place of their first mistake.
const std::map<std::string, const char*> s_FirstErrors = {
    {"broken-image", "fx.js:3: error: SV_initTexture: the image file cannot be decoded"},
    {"deep-config", "config.xml:2: error: not well-formed XML: elements are nested too deep"},
    {"emoji", nullptr},
    {"endless-recursion", "fx.js:3: error: RangeError"},
    {"grows-memory", "fx.js:8: error: Error: alloc failed"},
    {"impossible-output", "fx.js:5: error: SV_setOutputExtent(-1, 24) is ignored"},
    {"impossible-targets", "fx.js:5: error: SV_initRenderTarget: a texture of 0 x 2 pixels is not possible"},
    {"later-glsl-names", nullptr},
    {"misleading-message", "fx.js:5: error: SyntaxError: not here (line 70)"},
    {"odd-depths", nullptr},
    {"odd-numbers", nullptr},
    {"releases-frame", "fx.js:5: error: SV_release of the handle of SV_getSequenceRT"},
    {"releases-in-arguments", nullptr},
    {"releases-in-callbacks", nullptr},
    {"replaces-frame", "fx.js:5: error: SV_release of the handle of SV_getSequenceRT"},
    {"resizes-frame", nullptr},
    {"wide-image", "fx.js:3: error: SV_initTexture: a texture of 40000 x 1 pixels is not possible"},
};

class HostileGLTest : public FolderTest {};

TEST_F(HostileGLTest, HostileEffectsRenderOrFailWithTheirFileAndLine) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("tests/effects/hostile")) {
        if (!entry.is_directory())
            continue;
        const std::string name = entry.path().filename();
        SCOPED_TRACE(name);
        ASSERT_TRUE(s_FirstErrors.contains(name));
        const char* const error = s_FirstErrors.at(name);
        const ToolRun run = RunTool("render " + entry.path().string() +
                                    " --size 32x24 --depth 16 --quiet -o " + at("frame.png"));
        EXPECT_EQ(run.status, error ? 1 : 0) << run.err;
        EXPECT_THAT(run.err, HasSubstr(error ? entry.path().string() + "/" + error : ""));
        ++count;
    }
    EXPECT_EQ(count, s_FirstErrors.size());
}

} // namespace
