#include <cstdlib>
#include <nlohmann/json.hpp>

#include "tests/support/RunTool.h"
#include "tests/support/TestFiles.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"

namespace {

using namespace fxhost;
using testing::AllOf;
using testing::HasSubstr;
using Json = nlohmann::json;

const std::string s_Simple = "tests/effects/simple";

class CommandsGLTest : public FolderTest {
protected:
    // What a command prints that must succeed.
    static std::string done(const std::string& arguments) {
        const ToolRun run = RunTool(arguments);
        EXPECT_EQ(run.status, 0) << arguments << run.err;
        return run.out;
    }
};

TEST_F(CommandsGLTest, ParametersAreListedWithTypesRangesAndChoices) {
    const Json info = Json::parse(done("info --json " + s_Simple));
    EXPECT_EQ(info.at("name"), "Simple");
    EXPECT_EQ(info.at("parameters").at(0), Json::parse(R"({"name": "mode", "label": "Mode", "type": "pop-up",
        "shown": true, "enabled": true, "default": 1, "flags": [], "choices": ["Copy", "Fill", "Clock", "Other", "Larger"]})"));
    EXPECT_EQ(info.at("parameters").at(3).at("min"), -2.0);
    EXPECT_EQ(info.at("parameters").at(3).at("enabled"), false);
    EXPECT_THAT(done("info " + s_Simple), AllOf(HasSubstr("Simple 2.3.4"), HasSubstr("-2 to 8")));
}

// Eight pixels are around each cell, and eighteen more below it for the label.
TEST_F(CommandsGLTest, CellsOfASheetShowThePictureAndTheLabelOfTheirValues) {
    Picture boxes(32, 2, 8); // boxes of 2x2, half opaque red and half clear blue
    for (std::size_t i = 0; i < boxes.bytes.size(); ++i)
        boxes.bytes[i] = i % 8 < 2 || i % 8 == 7 ? 255 : 0;
    WritePicture(at("boxes.png"), boxes);
    done("sheet " + s_Simple + " -i " + at("boxes.png") + " --cell 16 --vary mode=1 -o " + at("small.png"));
    done("sheet " + s_Simple +
         " --size 20x20 --time 4 --vary 'fill=1,0,0; 0,0,1; 1,1,1,0' --vary mode=2,3 -o " + at("sheet.png"));
    const Picture small = ReadPicture(at("small.png"), std::nullopt);
    const Picture sheet = ReadPicture(at("sheet.png"), std::nullopt);
    ASSERT_EQ(std::pair(sheet.width, sheet.height), std::pair(8u + 3 * (20 + 8), 8u + 2 * (20 + 18 + 8)));
    const struct {
        const Picture& sheet;
        unsigned x, y, red, green, blue;
    } rows[] = {{sheet, 0, 0, 40, 40, 40},     {sheet, 8, 8, 255, 0, 0},  {sheet, 27, 27, 255, 0, 0},
                {sheet, 28, 27, 40, 40, 40},   {sheet, 36, 8, 0, 0, 255}, {sheet, 8, 54, 102, 51, 51},
                {sheet, 64, 8, 153, 153, 153}, // transparent: a checkerboard of 0.6 and 0.4
                {sheet, 72, 8, 102, 102, 102}, {small, 8, 8, 204, 77, 77}}; // 127.5 + 0.5 * 153, 0.5 * 153
    for (const auto& row : rows) {
        const std::uint8_t* pixel = row.sheet.Row(row.y) + row.x * 4;
        EXPECT_THAT(std::vector<unsigned>(pixel, pixel + 4),
                    testing::ElementsAre(255, row.red, row.green, row.blue))
            << row.x << " " << row.y;
    }
    std::size_t inside = 0, outside = 0; // ink
    for (unsigned y = 0; y < sheet.height; ++y)
        for (unsigned x = 0; x < sheet.width; ++x)
            if (sheet.Row(y)[x * 4 + 1] == 230)
                ++((x + 20) % 28 < 20 && (y + 38) % 46 >= 20 && (y + 38) % 46 < 38 ? inside : outside);
    EXPECT_GT(inside, 6 * 10u);
    EXPECT_EQ(outside, 0u);
}

TEST_F(CommandsGLTest, HelpAndManualListEveryExitStatus) {
    const std::string man = done("man"), help = done("--help");
    std::vector<int> listed;
    for (const auto& [status, meaning] : ExitStatusTable) {
        const std::string number = std::to_string(status);
        EXPECT_THAT(help, HasSubstr("\n  " + number + std::string(5 - number.size(), ' ') + meaning))
            << number;
        EXPECT_THAT(man, HasSubstr("\n.TP\n" + number + "\n")) << number;
        listed.push_back(status);
    }
    EXPECT_THAT(listed, testing::ElementsAre(ExitOk, ExitEffectFailed, ExitWrongUse, ExitHostRules,
                                             ExitRanAway, ExitHungUp, ExitStopped, ExitTerminated));
}

TEST_F(CommandsGLTest, ManualAndCompletionNameEveryCommandAndOption) {
    const std::string man = done("man"), help = done("--help");
    for (const std::string command : {"render", "info", "check", "new", "pack", "unpack", "sheet", "bench"}) {
        EXPECT_THAT(help, HasSubstr("  " + command + " "));
        EXPECT_THAT(man, HasSubstr("\n.SS " + command + "\n"));
        EXPECT_THAT(done(command + " --help"), HasSubstr("Example")) << command;
    }
    EXPECT_THAT(man, AllOf(HasSubstr("\\-\\-frame\\-timeout"), HasSubstr("\\fINAME=VALUE\\fR")));
    // Bash evaluates the script and prints its suggestions.
    const std::string completion = done("completion");
    const std::pair<const char*, const char*> rows[] = {
        {"un", "unpack "},
        {"check --str", "--strict "},
        {"pack --str", " "},
        {"render --host ''", "ae ae-plain premiere "},
        {"render effects/controls --param blen", "blend= "},
        {"render effects/controls --param blend =", "None Multiply Screen Soft\\ Light Duotone "},
        {"render effects/controls --param blend = S", "Screen Soft\\ Light "}};
    for (const auto& [words, offers] : rows) {
        writeFile("script", completion + "COMP_WORDS=(fxhost " + words +
                                ") COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_fxhost\n"
                                "printf '%s ' \"${COMPREPLY[@]}\" >" +
                                at("out"));
        EXPECT_EQ(std::system(("bash " + at("script")).c_str()), 0);
        EXPECT_EQ(bytes("out"), offers) << words;
    }
}

TEST_F(CommandsGLTest, EveryStepOfAFrameIsMeasured) {
    const Json times =
        Json::parse(done("bench " + s_Simple + " --size 20x10 --frames 3 --json")).at("milliseconds");
    double sum = 0;
    for (const char* step : {"preRender", "upload", "script", "draw", "read-back", "copy-out"}) {
        EXPECT_GT(times.at(step).at("median"), 0) << step;
        sum += times.at(step).at("p10").get<double>();
    }
    EXPECT_LE(sum, times.at("frame").at("p90").get<double>() * 1.01) << "steps overlap";
}

TEST_F(CommandsGLTest, NewEffectIsPackedRenderedAndUnpackedUnchanged) {
    const std::string effect = at("'My <Effect>'"), blob = at("blob.dat");
    done("new " + effect);
    EXPECT_EQ(RunTool("new " + effect).status, 2) << "a folder that is there must not be overwritten";
    done("check --strict " + effect);
    writeFile("My <Effect>/.hidden", "");
    done("pack " + effect + " -o " + blob);
    done("render " + blob + " -i samples/photo.png -o " + at("out.png"));
    done("unpack " + blob + " -o " + at("back"));
    for (const std::string file : {"fx.js", "main.frag", "config.xml"})
        EXPECT_EQ(bytes("back/" + file), bytes("My <Effect>/" + file));
    EXPECT_FALSE(exists("back/.hidden"));
    EXPECT_EQ(RunTool("unpack " + blob + " -o " + at("back")).status, 2);

    writeFile("My <Effect>/more/MAIN.frag", "");
    writeFile("My <Effect>/fx.js", "\nSV_initShader('one'); // S.V.initTexture('no.png')\n"
                                   "/* SV_initShader('no') */ S.V.initTexture( \"two.png\" , true);\n"
                                   "SV_initShader('text', 'void main(){}'); SV_initTexture(dir + 'x');\n"
                                   "s = '// no comment'; SV_initShader('three');");
    const ToolRun refused = RunTool("pack " + effect + " -o " + at("other.dat"));
    EXPECT_EQ(refused.status, 1);
    const std::string folder = at("My <Effect>/"), missing = ": error: the effect has no file ";
    EXPECT_EQ(refused.err, folder + "more/MAIN.frag: error: a package is flat, and \"" + folder +
                               "main.frag\" has the same name\n" + folder + "fx.js:2" + missing +
                               "\"one.frag\"\n" + folder + "fx.js:3" + missing + "\"two.png\"\n" + folder +
                               "fx.js:5" + missing + "\"three.frag\"\n");
    EXPECT_FALSE(exists("other.dat"));
}

} // namespace
