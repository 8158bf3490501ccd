#include <algorithm>
#include <filesystem>

#include "tests/support/RunTool.h"
#include "tests/support/TestFiles.h"
#include "toolkit/PictureFile.h"

namespace {

using namespace fxhost;
using testing::HasSubstr;
namespace fs = std::filesystem;

const std::string s_Simple = "tests/effects/simple";

class RenderGLTest : public FolderTest {
protected:
    // Renders through the test effect and reads the picture that it wrote.
    Picture render(const std::string& arguments, const std::string& file) const {
        const ToolRun run = RunTool("render " + s_Simple + " " + arguments + " -o " + at(file));
        EXPECT_EQ(run.status, 0) << arguments << run.err;
        return ReadPicture(at(file), std::nullopt);
    }
};

// Mode 1 of the test effect copies the layer, so upload, draw, read-back and files must keep every value.
TEST_F(RenderGLTest, ACopyKeepsEveryValueAtEveryDepth) {
    const struct {
        unsigned depth;
        const char *ending, *host;
    } rows[] = {{8, ".png", "ae"}, {8, ".png", "premiere"}, {16, ".tif", "ae-plain"}, {32, ".exr", "ae"}};
    for (const auto& row : rows) {
        const Picture picture = SomePicture(13, 7, row.depth, 0);
        const std::string input = at(std::string("in") + row.ending);
        WritePicture(input, picture);
        const Picture result = render("-i " + input + " --host " + row.host, std::string("out") + row.ending);
        ASSERT_EQ(result.bytes.size(), picture.bytes.size()) << row.host << row.depth;
        if (row.depth != 32) {
            EXPECT_EQ(result.bytes, picture.bytes) << row.host << row.depth;
            continue;
        }
        // Filtering of float textures is exact only to about 17 bits, even at texel centres.
        const auto* got = reinterpret_cast<const float*>(result.bytes.data());
        const auto* wanted = reinterpret_cast<const float*>(picture.bytes.data());
        for (std::size_t i = 0; i < 13 * 7 * 4; ++i)
            EXPECT_NEAR(got[i], wanted[i], 1e-5) << i;
    }
    EXPECT_EQ(names().size(), 6u) << "temporary files are left";
    // 16 bits are exact through float, but not through the range of the host API.
    Picture deep(256, 256, 32); // every value of 16 bits once
    auto* const values = reinterpret_cast<float*>(deep.bytes.data());
    for (std::size_t i = 0; i < 256 * 256; ++i)
        for (std::size_t c = 0; c < 4; ++c)
            values[4 * i + c] = c == 0 ? 1 : static_cast<float>(i) / 65535;
    PictureWriting writing;
    writing.bits = SampleType::Bits16;
    WritePicture(at("deep.png"), deep, writing);
    render("-i " + at("deep.png") + " --depth 32", "deeper.png");
    EXPECT_EQ(ReadPicture(at("deeper.png"), 32).bytes, ReadPicture(at("deep.png"), 32).bytes);
}

TEST_F(RenderGLTest, JsonEventsAreOneLineForEachFrameAndASummary) {
    const ToolRun run =
        RunTool("render " + s_Simple + " --size 4x4 --frames 3,5- --json -o " + at("f_#.png"));
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out,
                testing::MatchesRegex(
                    "\\{\"event\": \"error\", \"text\": \"--frames 3,5-: expected a last frame[^\n]*\n"
                    "\\{\"event\": \"summary\", \"status\": 2, \"written\": 0, [^\n]*\n"));
    // The name of the folder is not valid UTF-8.
    fs::create_directory(at("caf\xe9"));
    fs::copy(s_Simple, at("caf\xe9/simple"));
    const ToolRun good = RunTool("render " + at("caf\xe9/simple") + " --size 4x4 --frames 3,5 --json -o " +
                                 at("caf\xe9/f_#.png"));
    EXPECT_EQ(good.status, 0);
    EXPECT_EQ(good.err, "");
    EXPECT_THAT(
        good.out,
        testing::AllOf(HasSubstr("caf\\udce9/f_3.png"), HasSubstr("{\"event\": \"frame\", \"frame\": 5, "),
                       HasSubstr("{\"event\": \"summary\", \"status\": 0, \"written\": 2, \"total\": 2, ")));
    EXPECT_EQ(std::count(good.out.begin(), good.out.end(), '\n'), 3);
    EXPECT_TRUE(fs::exists(at("caf\xe9/f_5.png")));
}

TEST_F(RenderGLTest, ParametersLayersTimeAndSizeReachTheEffect) {
    Picture small(2, 2, 8);
    small.bytes = {255, 200, 2, 3, 0, 9, 9, 9, 0, 9, 9, 9, 0, 9, 9, 9}; // only one pixel is opaque
    WritePicture(at("small.png"), small);
    writeFile("rows.ppm", "P6\n1 2\n255\n\xff\x10\x20\x01\x02\x03");
    using Pixel = std::vector<std::uint8_t>; // alpha, red, green, blue
    const struct {
        std::string arguments;
        unsigned width, height;
        Pixel first;
    } rows[] = {
        // The second mode fills with the colour, in every host.
        {"--size 5x3 -p Mode=Fill -p fill=1,0.2,0,0.4", 5, 3, {102, 255, 51, 0}},
        {"--size 5x3 -p Mode=Fill -p fill=1,0.2,0,0.4 --host premiere", 5, 3, {102, 255, 51, 0}},
        // The third shows time / 10 as red and the output's size / 100 as green and blue.
        {"--size 20x40 --param mode=3 --time 4", 20, 40, {255, 102, 51, 102}},
        // The fourth copies the layer parameter, the fifth asks for an output of twice the size.
        {"--size 2x2 --param mode=4 --layer Other=" + at("small.png"), 2, 2, {255, 200, 2, 3}},
        {"--size 4x3 --param mode=5", 8, 6, {0, 0, 0, 0}},
        {"-i " + at("rows.ppm"), 1, 2, {255, 255, 16, 32}},
        {"-i " + at("small.png") + " --downsample 1/2", 1, 1, {64, 200, 2, 3}},
    };
    for (const auto& row : rows) {
        const Picture result = render(row.arguments, "out.png");
        EXPECT_EQ(result.width, row.width) << row.arguments;
        EXPECT_EQ(result.height, row.height) << row.arguments;
        EXPECT_EQ(Pixel(result.bytes.begin(), result.bytes.begin() + 4), row.first) << row.arguments;
    }
}

TEST_F(RenderGLTest, WrongUseIsExplainedAndWritesNothing) {
    WritePicture(at("cut.png"), SomePicture(40, 40, 8, 0));
    fs::resize_file(at("cut.png"), fs::file_size(at("cut.png")) / 2);
    const std::string out = " -o " + at("out.png "), simple = "render " + s_Simple + out;
    const std::pair<std::string, const char*> rows[] = {
        {"", "subcommand"},
        {simple, "--input"},
        {simple + "-i README.md", "README.md: cannot be read"},
        {simple + "-i " + at("cut.png"), "cut.png: cannot be read"},
        {simple + "-i samples/photo.png --size 4x4", "cannot be given with --input"},
        {simple + "--size 4", "WIDTHxHEIGHT"},
        {simple + "--size 0x4", "from 1 to"},
        {simple + "--size 4x4 --depth 12", "--depth"},
        {simple + "--size 4x4 --downsample 1/0", "--downsample 1/0"},
        {simple + "--size 4x4 -p nothing=1", "it has mode, fill, other"},
        {simple + "--size 4x4 -l mode=samples/photo.png", "not a layer"},
        {simple + "--size 4x4 -l other=none.png", "none.png"},
        {"render " + s_Simple + " --size 4x4 -o " + at("out.unknown"), "ending; .png"},
        {"render " + s_Simple + " --size 4x4 -o " + at("no/out.png"), "there is no folder"},
        {"sheet " + s_Simple + " --size 4x4 --vary mode=9" + out, "from 1 to 5"},
        {"sheet " + s_Simple + " --size 4x4 --vary mode=" + out, "--vary mode="},
        {"sheet " + s_Simple + " --size 16380x1 --cell 16380 --vary mode=1" + out, "larger than 16384"},
        {"info nowhere", "no such effect"},
    };
    for (const auto& [arguments, part] : rows) {
        const ToolRun run = RunTool(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_THAT(run.err, HasSubstr(part)) << arguments;
    }
    EXPECT_THAT(names(), testing::ElementsAre("cut.png"));
}

TEST_F(RenderGLTest, FailingEffectsAreReportedAndLeaveOnlyAFailedPicture) {
    const std::pair<std::string, const char*> rows[] = {
        {"throws", "throws/fx.js:17: error: Error: no drawing today\n    at draw (fx.js:17)"},
        {"shader-error", "shader-error/wrong.frag:5: error: "},
    };
    for (const auto& [effect, part] : rows) {
        const ToolRun run =
            RunTool("render tests/effects/broken/" + effect + " --size 300x64 -o " + at(effect + ".png"));
        EXPECT_EQ(run.status, 1) << effect;
        EXPECT_THAT(run.err, HasSubstr(part));
        EXPECT_FALSE(exists(effect + ".png")) << effect;
        EXPECT_TRUE(exists(effect + ".failed.png")) << effect;
    }
}

} // namespace
