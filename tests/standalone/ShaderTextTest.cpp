#include "standalone/check/ShaderText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace fxhost;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<int> Lines(const std::string& text) {
    std::vector<int> lines;
    for (const auto& finding : CheckShaderText("a.frag", text))
        lines.push_back(finding.line);
    return lines;
}

// The characters after which the engine rewrites a read: white space, ( * + - / and =.
TEST(ShaderTextTest, ReadsAreReportedAfterEveryOtherCharacter) {
    for (const char before : std::string(" \t(*+-/="))
        EXPECT_THAT(Lines(std::string("x\nv") + before + "texture2D(s, t)"), IsEmpty()) << before;
    for (const char before : std::string(",![{;:?<>&|)"))
        EXPECT_THAT(Lines(std::string("x\nv") + before + "texture2D(s, t)"), ElementsAre(2)) << before;
    EXPECT_THAT(
        CheckShaderText("a.frag", "mix( texture2D(a,b),texture2DLod (a,b,0.0), textureCube(c,d))")[0].text,
        HasSubstr("texture2DLod"));
}

TEST(ShaderTextTest, OtherNamesCommentsAndPlainMentionsAreNoReads) {
    EXPECT_THAT(
        Lines("vec4 c=mytexture2D(s),xtexture2D(s); // ,texture2D(s)\n/* ,texture2D(\n */ texture2D;"),
        IsEmpty());
    EXPECT_THAT(Lines("\n\n = texture2DProj(s, t)"), ElementsAre(3))
        << "the engine does not rewrite it at all";
}

TEST(ShaderTextTest, DirectivesThatMustComeFirstAreReported) {
    EXPECT_THAT(Lines("#version 120\n  # extension GL_x : enable\n#define version 3\n// #version\n"),
                ElementsAre(1, 2));
}

TEST(ShaderTextTest, UniformsAreFoundByTheirDeclaration) {
    const std::string text =
        "// uniform float a;\nuniform float ab, b;\nuniform vec2 a\n[3], c;\nfloat d = a;";
    EXPECT_EQ(LineOfUniform(text, "a"), 3);
    EXPECT_EQ(LineOfUniform(text, "b"), 2);
    EXPECT_EQ(LineOfUniform(text, "c"), 4);
    EXPECT_EQ(LineOfUniform(text, "d"), 0);
}

} // namespace
