#include "gpu/ShaderPitcher.h"
#include "gpu/AuthorLines.h"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t s_NoMatch = std::string::npos;

TEST(FindRoutineTest, TheCharactersOnBothSidesDecideWhetherANameMatches) {
    const struct {
        const char* text;
        const char* name;
        unsigned mode;
        std::size_t start, expected;
    } rows[] = {{"void main()", "main", 0, 0, 5},
                {"void\tmain (void)", "main", 0, 0, 5},
                {"main()", "main", 0, 0, s_NoMatch},
                {"(main()", "main", 0, 0, s_NoMatch},
                {"void main", "main", 0, 0, s_NoMatch},
                {"void main;", "main", 0, 0, s_NoMatch},
                {" domain() main()", "main", 0, 0, 10},
                {" f() f()", "f", 1, 2, 5},
                {" texture2DProj(", "texture2D", 1, 0, s_NoMatch},
                {"=f \n(", "f", 1, 0, 1},
                {" samplerCube e", "samplerCube", 2, 0, 1},
                {"(samplerCube e", "samplerCube", 2, 0, 1},
                {",samplerCube e", "samplerCube", 2, 0, s_NoMatch},
                {" samplerCube.x", "samplerCube", 2, 0, 1},
                {" samplerCube", "samplerCube", 2, 0, s_NoMatch},
                {" samplerCube;", "samplerCube", 2, 0, s_NoMatch},
                {"", "f", 1, 1, s_NoMatch}};
    for (const auto& row : rows)
        EXPECT_EQ(findRoutine(row.text, row.name, row.mode, row.start), row.expected) << row.text;
    for (const char before : std::string(" \t\n\v\f\r(*+-/="))
        EXPECT_EQ(findRoutine(std::string(1, before) + "f(", "f", 1, 0), 1u) << int(before);
    for (const char before : std::string(",!)[{;:?<>&|%x_0"))
        EXPECT_EQ(findRoutine(std::string(1, before) + "f(", "f", 1, 0), s_NoMatch) << before;
}

const std::string s_Read = "vec4 repl_texture2D(sampler2D a,vec2 b) { return texture2D(a,b).SWIZZLE; }\n";
const std::string s_Lod =
    "vec4 repl_texture2DLod(sampler2D a,vec2 b,float c) { return texture2DLod(a,b,c).SWIZZLE; }\n";
const std::string s_Cube =
    "vec4 repl_textureCube(sampler2D a,vec3 b) { vec2 uv = vec2( (atan( b.x, b.z ) + 3.141526f)/6.283052f, "
    "acos(b.y)/3.141526f ); return texture2D(a,uv).SWIZZLE; }\n";
const std::string s_Main = "\nvoid main() { repl_main(); gl_FragColor = gl_FragColor.argb; }";

TEST(ShaderPitcherTest, SourcesAreRewrittenAsTextAndAddedLinesAreCounted) {
    const struct {
        std::string source, rewritten;
        unsigned added;
    } rows[] = {
        {"void main(){x();}\nvoid main(){}", "void repl_main(){x();}\nvoid main(){}" + s_Main, 0},
        {"void other(){}", "void other(){}", 0},
        {"c = texture2D(s,u);x=texture2D (s,u);", s_Read + "c = repl_texture2D(s,u);x=repl_texture2D (s,u);",
         1},
        {"mix(texture2D(a,u),texture2D(b,u),t)", s_Read + "mix(repl_texture2D(a,u),texture2D(b,u),t)", 1},
        {"// texture2D(s,u)\n", s_Read + "// repl_texture2D(s,u)\n", 1},
        {"c = texture2DLod(s,u,0.);", s_Lod + "c = repl_texture2DLod(s,u,0.);", 1},
        {"uniform samplerCube e;\nvec4 c = textureCube(e,d);",
         s_Cube + "uniform sampler2D e;\nvec4 c = repl_textureCube(e,d);", 1},
        {"uniform samplerCube e;", "uniform sampler2D e;", 0},
        {"uniform samplerCube e;\nvoid main() {\n"
         "gl_FragColor = texture2D(s,u) + texture2DLod(s,u,1.) + textureCube(e,d);\n}",
         s_Cube + s_Lod + s_Read +
             "uniform sampler2D e;\nvoid repl_main() {\n"
             "gl_FragColor = repl_texture2D(s,u) + repl_texture2DLod(s,u,1.) + repl_textureCube(e,d);\n}" +
             s_Main,
         3},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ShaderPitcher::rewrite(row.source), row.rewritten);
        EXPECT_EQ(ShaderPitcher::addedLines(row.source), row.added) << row.source;
    }
}

TEST(AuthorLinesTest, LineNumbersOfEveryDriverAreThoseOfTheAuthor) {
    const struct {
        const char *log, *expected;
    } rows[] = {{"1:7(3): error: x\n1:2(1): error: y", "1:5(3): error: x\n1:2(1): error: y"}, // Mesa
                {"ERROR: 0:12: x\nWARNING: 0:13: y\n", "ERROR: 0:7: x\nWARNING: 0:8: y\n"},   // Apple
                {"0(12) : error C0000: x\n", "0(7) : error C0000: x\n"},                      // NVIDIA
                {"2 errors\n\n9999999999:9999999999: x\n7", "2 errors\n\n9999999999:9999999999: x\n7"}};
    for (const auto& row : rows)
        EXPECT_EQ(ToAuthorLines(row.log, 2, 3), row.expected);
}

} // namespace
