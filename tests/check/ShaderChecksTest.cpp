#include "check/ShaderChecks.h"

#include <gtest/gtest.h>

namespace {

using namespace fxhost;

std::vector<int> Lines(const std::string& text) {
    std::vector<int> lines;
    for (const auto& finding : CheckShaderSource("a.frag", text))
        lines.push_back(finding.line);
    return lines;
}

TEST(ShaderChecksTest, TextureReadsWithoutRewritingAndMisplacedDirectivesAreReported) {
    const std::string rewrites = " \t(*+-/=", leaves = ",![{;:?<>&|)"; // characters before the call
    for (const char before : rewrites + leaves)
        EXPECT_EQ(Lines(std::string("x\nv") + before + "texture2D(s, t)").empty(),
                  rewrites.find(before) != std::string::npos)
            << before;
    const std::pair<const char*, std::vector<int>> rows[] = {
        {"\nmix( texture2D(a,b)\n,texture2DLod (a,b,0.0), textureCube(c,d))", {3}},
        {"\n\n = texture2DProj(s, t)", {3}}, // a function that rewriting does not handle
        {"vec4 c=mytexture2D(s),xtexture2D(s); // ,texture2D(s)\n/* ,texture2D(\n */ texture2D;", {}},
        {"#version 120\n  # extension GL_x : enable\n#define version 3\n// #version\n", {1, 2}},
    };
    for (const auto& [text, lines] : rows)
        EXPECT_EQ(Lines(text), lines) << text;
}

TEST(ShaderChecksTest, LinesOfUniformsAreThoseOfTheirDeclarations) {
    const std::string text =
        "// uniform float a;\nuniform float ab, b;\nuniform vec2 a\n[3], c;\nfloat d = a;";
    const std::pair<const char*, int> rows[] = {{"a", 3}, {"b", 2}, {"c", 4}, {"d", 0}};
    for (const auto& [name, line] : rows)
        EXPECT_EQ(LineOfUniform(text, name), line) << name;
}

} // namespace
