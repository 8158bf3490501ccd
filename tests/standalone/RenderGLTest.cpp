#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "standalone/images/PictureFile.h"
#include "tests/standalone/RunTool.h"

namespace {

using namespace fxhost;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

const std::string s_Broken = "tests/effects/broken/";
const std::string s_Simple = "tests/effects/simple";

// Every value differs from its neighbours'; transparent pixels keep their colours.
Picture Pattern(unsigned width, unsigned height, unsigned depth) {
    Picture picture(width, height, depth);
    for (unsigned i = 0; i < width * height * 4; ++i) {
        if (depth == 8)
            picture.bytes[i] = static_cast<std::uint8_t>(i * 37);
        else if (depth == 16)
            reinterpret_cast<std::uint16_t*>(picture.bytes.data())[i] =
                static_cast<std::uint16_t>(i * 997 % 32769);
        else
            reinterpret_cast<float*>(picture.bytes.data())[i] = static_cast<float>(i % 19) / 8.0f - 0.5f;
    }
    return picture;
}

// Mode 1 of the test effect copies the layer: upload, draw, read-back and files must lose nothing.
TEST(RenderGLTest, ACopyKeepsEveryValueAtEveryDepth) {
    const std::string folder = FreshFolder();
    const struct {
        unsigned depth;
        const char* file;
    } rows[] = {{8, ".png"}, {16, ".tif"}, {32, ".exr"}};
    for (const auto& row : rows) {
        const std::string in = folder + "/in" + row.file, out = folder + "/out" + row.file;
        const Picture picture = Pattern(13, 7, row.depth);
        WritePicture(in, picture);
        const ToolRun run = RunTool("render " + s_Simple + " -i " + in + " -o " + out);
        ASSERT_EQ(run.status, 0) << run.err;
        const Picture result = ReadPicture(out, std::nullopt);
        EXPECT_EQ(result.depth, row.depth);
        if (row.depth != 32) {
            EXPECT_EQ(result.bytes, picture.bytes) << row.depth;
            continue;
        }
        // Filtering between float texels costs the last bits, also in a texel's middle.
        const auto* got = reinterpret_cast<const float*>(result.bytes.data());
        const auto* wanted = reinterpret_cast<const float*>(picture.bytes.data());
        for (std::size_t i = 0; i < picture.bytes.size() / sizeof(float); ++i)
            EXPECT_NEAR(got[i], wanted[i], 1e-5) << i;
    }
}

TEST(RenderGLTest, ParametersLayersTimeAndSizeReachTheEffect) {
    const std::string folder = FreshFolder(), out = folder + "/out.png";
    const auto first = [&](const std::string& arguments) {
        const ToolRun run = RunTool("render " + s_Simple + " -o " + out + " " + arguments);
        EXPECT_EQ(run.status, 0) << run.err;
        const Picture picture = ReadPicture(out, std::nullopt);
        return std::vector<int>(picture.bytes.begin(), picture.bytes.begin() + 4);
    };
    // The effect's second mode fills with the colour; alpha comes first in the host's pixels.
    EXPECT_EQ(first("--size 5x3 -p Mode=Fill -p fill=1,0.2,0,0.4"), (std::vector<int>{102, 255, 51, 0}));
    // The third shows time / 10 as red and the output's size / 100 as green and blue.
    EXPECT_EQ(first("--size 20x40 --param mode=3 --time 4"), (std::vector<int>{255, 102, 51, 102}));
    // The fourth copies the layer parameter.
    Picture other(1, 1, 8);
    other.bytes = {255, 1, 2, 3};
    WritePicture(folder + "/other.png", other);
    EXPECT_EQ(first("--size 4x4 --param mode=4 --layer Other=" + folder + "/other.png"),
              (std::vector<int>{255, 1, 2, 3}));
    // The fifth asks for an output of twice the size.
    EXPECT_EQ(first("--size 4x3 --param mode=5").size(), 4u);
    const Picture larger = ReadPicture(out, std::nullopt);
    EXPECT_EQ(larger.width, 8u);
    EXPECT_EQ(larger.height, 6u);
}

TEST(RenderGLTest, WrongUseIsRefusedInWordsAndWritesNothing) {
    const std::string folder = FreshFolder(), out = " -o " + folder + "/out.png ";
    const std::string sized = s_Simple + " --size 4x4" + out;
    const struct {
        std::string arguments, part;
    } rows[] = {
        {"", "subcommand"},
        {"render", "--output"},
        {"render " + s_Simple + " --size 4x4", "--output"},
        {"render nowhere --size 4x4" + out, "no such effect"},
        {"render samples -i samples/photo.png" + out, "no fx.js"},
        {"render samples/photo.png --size 4x4" + out, "neither a zip archive"},
        {"render " + s_Simple + out, "--input"},
        {"render " + s_Simple + " -i README.md" + out, "README.md: cannot be read"},
        {"render " + s_Simple + " --size 4" + out, "WIDTHxHEIGHT"},
        {"render " + s_Simple + " --size 0x4" + out, "from 1 to"},
        {"render " + sized + "--depth 12", "--depth"},
        {"render " + sized + "-p nothing=1", "it has mode, fill, other"},
        {"render " + sized + "-p mode=Nothing", "\"Copy\""},
        {"render " + sized + "-p fill=1,2", "red,green,blue"},
        {"render " + sized + "-p other=1", "--layer"},
        {"render " + sized + "-l mode=samples/photo.png", "not a layer"},
        {"render " + sized + "-l other=none.png", "none.png"},
        {"render " + s_Simple + " --size 4x4 -o " + folder + "/out.unknown", "ending"},
        {"info nowhere", "no such effect"},
    };
    for (const auto& row : rows) {
        const ToolRun run = RunTool(row.arguments);
        EXPECT_EQ(run.status, 2) << row.arguments;
        EXPECT_THAT(run.err, HasSubstr(row.part)) << row.arguments;
    }
    EXPECT_TRUE(fs::is_empty(folder));
}

TEST(RenderGLTest, FailingEffectsAreToldAndTheirPictureIsStillWritten) {
    const std::string folder = FreshFolder();
    const struct {
        const char* effect;
        const char* part;
    } rows[] = {
        {"throws", "throws/fx.js:17: error: Error: no drawing today"},
        {"shader-error", "shader-error/wrong.frag:5: error: "},
        {"missing-shader", "missing-shader/gone.frag: error: shader file not found"},
        {"missing-image", "missing-image/fx.js:2: error: the effect has no file \"gone.png\""},
    };
    for (const auto& row : rows) {
        const std::string out = folder + "/" + row.effect + ".png";
        const ToolRun run = RunTool("render " + s_Broken + row.effect + " --size 300x64 -o " + out);
        EXPECT_EQ(run.status, 1) << row.effect;
        EXPECT_THAT(run.err, HasSubstr(row.part));
        EXPECT_TRUE(fs::exists(out)) << row.effect;
    }
    // The text of a shader's errors is drawn in white over the picture.
    const Picture overlay = ReadPicture(folder + "/shader-error.png", std::nullopt);
    std::size_t white = 0;
    for (std::size_t i = 0; i < overlay.bytes.size(); i += 4)
        white += overlay.bytes[i + 1] == 255 && overlay.bytes[i + 2] == 255 && overlay.bytes[i + 3] == 255;
    EXPECT_GT(white, 100u);
}

TEST(InfoGLTest, ParametersAreListedWithTypesRangesAndChoices) {
    const ToolRun run = RunTool("info --json " + s_Simple);
    ASSERT_EQ(run.status, 0) << run.err;
    const auto info = nlohmann::json::parse(run.out);
    EXPECT_EQ(info.at("name"), "Simple");
    EXPECT_EQ(info.at("version"), "2.3.4");
    const auto& mode = info.at("parameters").at(0);
    EXPECT_EQ(mode.at("type"), "pop-up");
    EXPECT_EQ(mode.at("default"), 1);
    EXPECT_EQ(mode.at("choices"), (nlohmann::json{"Copy", "Fill", "Clock", "Other", "Larger"}));
    EXPECT_EQ(info.at("parameters").at(3).at("min"), -2.0);
    EXPECT_EQ(info.at("parameters").at(3).at("enabled"), false);
    EXPECT_THAT(RunTool("info " + s_Simple).out, AllOf(HasSubstr("Simple 2.3.4"), HasSubstr("-2 to 8")));
}

TEST(SheetGLTest, EveryCellShowsItsValue) {
    const std::string out = FreshFolder() + "/sheet.png";
    const ToolRun run =
        RunTool("sheet " + s_Simple + " --size 20x10 -p mode=2 --vary 'fill=1,0,0; 0,0,1' -o " + out);
    ASSERT_EQ(run.status, 0) << run.err;
    const Picture sheet = ReadPicture(out, std::nullopt);
    const std::uint8_t *first = sheet.Row(8) + 8 * 4, *second = sheet.Row(8) + 36 * 4;
    EXPECT_EQ(std::vector<int>(first, first + 4), (std::vector<int>{255, 255, 0, 0}));
    EXPECT_EQ(std::vector<int>(second, second + 4), (std::vector<int>{255, 0, 0, 255}));
    EXPECT_EQ(RunTool("sheet " + s_Simple + " --size 20x10 --vary mode=9 -o " + out).status, 2);
}

TEST(ReferenceTest, ManualAndCompletionNameEveryCommandAndOption) {
    const std::string man = RunTool("man").out, completion = RunTool("completion").out;
    const std::string help = RunTool("--help").out;
    for (const char* command : {"render", "info", "check", "new", "pack", "unpack", "sheet", "bench"}) {
        EXPECT_THAT(help, HasSubstr(std::string("  ") + command + " "));
        EXPECT_THAT(man, HasSubstr(std::string("\n.SS ") + command + "\n"));
        EXPECT_THAT(RunTool(std::string(command) + " --help").out, HasSubstr("Example")) << command;
    }
    EXPECT_THAT(man, AllOf(HasSubstr("\\-\\-frame\\-timeout"), HasSubstr("\\fINAME=VALUE\\fR")));
    // Bash itself says what it would offer.
    const auto offers = [&](const std::string& words, int at) {
        const std::string folder = FreshFolder();
        std::ofstream(folder + "/script")
            << completion << "COMP_WORDS=(fxhost " << words << ") COMP_CWORD=" << at
            << "\n_fxhost\nprintf '%s ' \"${COMPREPLY[@]}\" >" << folder << "/out\n";
        EXPECT_EQ(std::system(("bash " + folder + "/script").c_str()), 0);
        return ReadFileText(folder + "/out");
    };
    EXPECT_EQ(offers("un", 1), "unpack ");
    EXPECT_EQ(offers("check --str", 2), "--strict ");
    EXPECT_EQ(offers("pack --str", 2), " ");
    EXPECT_EQ(RunTool("--version").out.substr(0, 7), "fxhost ");
}

TEST(BenchGLTest, EveryStepIsMeasured) {
    const ToolRun run = RunTool("bench " + s_Simple + " --size 20x10 --frames 3 --json");
    ASSERT_EQ(run.status, 0) << run.err;
    const auto report = nlohmann::json::parse(run.out);
    double sum = 0;
    for (const char* step : {"preRender", "upload", "script", "draw", "read-back", "copy-out"}) {
        EXPECT_GT(report.at("milliseconds").at(step).at("median"), 0) << step;
        sum += report.at("milliseconds").at(step).at("p10").get<double>();
    }
    EXPECT_LE(sum, report.at("milliseconds").at("frame").at("p90").get<double>() * 1.01) << "steps overlap";
}

TEST(PackGLTest, FromANewFolderToAPackageThatRenders) {
    const std::string folder = FreshFolder(), effect = folder + "/'My <Effect>'", blob = folder + "/blob.dat";
    ASSERT_EQ(RunTool("new " + effect).status, 0);
    EXPECT_EQ(RunTool("new " + effect).status, 2) << "a folder that is there must not be overwritten";
    EXPECT_EQ(RunTool("check --strict " + effect).status, 0);
    ASSERT_EQ(RunTool("pack " + effect + " -o " + blob).status, 0);
    EXPECT_EQ(RunTool("pack " + effect + " -o " + folder + "/again.dat").status, 0);
    EXPECT_EQ(ReadFileText(blob), ReadFileText(folder + "/again.dat"));
    const ToolRun run = RunTool("render " + blob + " -i samples/photo.png -o " + folder + "/out.png");
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(RunTool("unpack " + blob + " -o " + folder + "/back").status, 0);
    for (const char* file : {"fx.js", "main.frag", "config.xml"})
        EXPECT_EQ(ReadFileText(folder + "/back/" + file), ReadFileText(folder + "/My <Effect>/" + file));
    EXPECT_EQ(RunTool("unpack " + blob + " -o " + folder + "/back").status, 2);
}

TEST(PackGLTest, FoldersThatMustNotShipAreRefused) {
    const std::string folder = FreshFolder(), blob = folder + "/blob.dat";
    fs::copy(s_Simple, folder + "/twice");
    fs::create_directory(folder + "/twice/more");
    fs::copy(s_Simple + "/copy.frag", folder + "/twice/more/COPY.frag");
    const struct {
        std::string effect, part;
        int status;
    } rows[] = {
        {folder + "/twice", "has the same name", 1},
        {s_Broken + "missing-shader", "fx.js:4: error: the effect has no file \"gone.frag\"", 1},
        {s_Broken + "missing-image", "fx.js:2: error: the effect has no file \"gone.png\"", 1},
        {"samples", "no fx.js", 2},
    };
    for (const auto& row : rows) {
        const ToolRun run = RunTool("pack " + row.effect + " -o " + blob);
        EXPECT_EQ(run.status, row.status) << row.effect;
        EXPECT_THAT(run.err, HasSubstr(row.part)) << row.effect;
        EXPECT_FALSE(fs::exists(blob)) << row.effect;
    }
}

} // namespace
