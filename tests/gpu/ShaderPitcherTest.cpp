#include "gpu/ShaderPitcher.h"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t npos = std::string::npos;

struct FindRow {
    const char* text;
    const char* name;
    unsigned mode;
    std::size_t start;
    std::size_t expected;
};
const FindRow s_FindRows[] = {
    {"void main()", "main", 0, 0, 5},
    {"void\tmain (void)", "main", 0, 0, 5},
    {"main()", "main", 0, 0, npos},
    {"(main()", "main", 0, 0, npos},
    {"void main", "main", 0, 0, npos},
    {"void main;", "main", 0, 0, npos},
    {" domain() main()", "main", 0, 0, 10},
    {" f() f()", "f", 1, 2, 5},
    {" texture2DProj(", "texture2D", 1, 0, npos},
    {" mytexture2D(", "texture2D", 1, 0, npos},
    {"=f \n(", "f", 1, 0, 1},
    {" samplerCube e", "samplerCube", 2, 0, 1},
    {"(samplerCube e", "samplerCube", 2, 0, 1},
    {",samplerCube e", "samplerCube", 2, 0, npos},
    {" samplerCube.x", "samplerCube", 2, 0, 1},
    {" samplerCube", "samplerCube", 2, 0, npos},
    {" samplerCube;", "samplerCube", 2, 0, npos},
    {"", "f", 1, 1, npos},
};

TEST(FindRoutineTest, LooksAtBothSidesOfTheName) {
    for (const FindRow& row : s_FindRows)
        EXPECT_EQ(findRoutine(row.text, row.name, row.mode, row.start), row.expected)
            << "\"" << row.text << "\" mode " << row.mode;
}

TEST(FindRoutineTest, OnlySomeCharactersMayPrecedeACall) {
    for (const char before : std::string(" \t\n\v\f\r(*+-/="))
        EXPECT_EQ(findRoutine(std::string(1, before) + "f(", "f", 1, 0), 1u) << int(before);
    for (const char before : std::string(",!)[{;:?<>&|%x_0"))
        EXPECT_EQ(findRoutine(std::string(1, before) + "f(", "f", 1, 0), npos) << before;
}

TEST(ShaderPitcherTest, OutputIsSwizzledInAnAppendedMain) {
    EXPECT_EQ(ShaderPitcher::addOutputSwizzle("void main(){x();}\nvoid main(){}"),
              "void repl_main(){x();}\nvoid main(){}"
              "\nvoid main() { repl_main(); gl_FragColor = gl_FragColor.argb; }");
    EXPECT_EQ(ShaderPitcher::addOutputSwizzle("void other(){}"), "void other(){}");
}

constexpr const char* s_ReadWrapper =
    "vec4 repl_texture2D(sampler2D a,vec2 b) { return texture2D(a,b).SWIZZLE; }\n";
constexpr const char* s_LodWrapper =
    "vec4 repl_texture2DLod(sampler2D a,vec2 b,float c) { return texture2DLod(a,b,c).SWIZZLE; }\n";
constexpr const char* s_CubeWrapper =
    "vec4 repl_textureCube(sampler2D a,vec3 b) { vec2 uv = vec2( (atan( b.x, b.z ) + 3.141526f)/6.283052f, "
    "acos(b.y)/3.141526f ); return texture2D(a,uv).SWIZZLE; }\n";

TEST(ShaderPitcherTest, ReadsGoThroughWrappers) {
    EXPECT_EQ(ShaderPitcher::addTextureFlip("c = texture2D(s,u);x=texture2D (s,u);"),
              s_ReadWrapper + std::string("c = repl_texture2D(s,u);x=repl_texture2D (s,u);"));
    EXPECT_EQ(ShaderPitcher::addTextureFlip("mix(texture2D(a,u),texture2D(b,u),t)"),
              s_ReadWrapper + std::string("mix(repl_texture2D(a,u),texture2D(b,u),t)"));
    EXPECT_EQ(ShaderPitcher::addTextureFlip("// texture2D(s,u)\n"),
              s_ReadWrapper + std::string("// repl_texture2D(s,u)\n"));
    EXPECT_EQ(ShaderPitcher::addTextureFlip("c = texture2DLod(s,u,0.);"), "c = texture2DLod(s,u,0.);");
    EXPECT_EQ(ShaderPitcher::addTextureLodFlip("c = texture2DLod(s,u,0.);"),
              s_LodWrapper + std::string("c = repl_texture2DLod(s,u,0.);"));
    EXPECT_EQ(ShaderPitcher::addTextureLodFlip("c = texture2D(s,u);"), "c = texture2D(s,u);");
}

TEST(ShaderPitcherTest, CubesBecomePictures) {
    EXPECT_EQ(ShaderPitcher::replaceCubemaps("uniform samplerCube e;\nvec4 c = textureCube(e,d);"),
              s_CubeWrapper + std::string("uniform sampler2D e;\nvec4 c = repl_textureCube(e,d);"));
    EXPECT_EQ(ShaderPitcher::replaceCubemaps("uniform samplerCube e;"), "uniform sampler2D e;");
    EXPECT_EQ(ShaderPitcher::replaceCubemaps("vec4 f(vec3 d,samplerCube e)"), "vec4 f(vec3 d,samplerCube e)");
}

TEST(ShaderPitcherTest, AllRewritesTogetherKeepTheAuthorsLinesInOrder) {
    const std::string source = "uniform samplerCube e;\nvoid main() {\n"
                               "gl_FragColor = texture2D(s,u) + texture2DLod(s,u,1.) + textureCube(e,d);\n}";
    const std::string rewritten = ShaderPitcher::Rewrite(source);
    EXPECT_EQ(rewritten, s_CubeWrapper + std::string(s_LodWrapper) + s_ReadWrapper +
                             "uniform sampler2D e;\nvoid repl_main() {\n"
                             "gl_FragColor = repl_texture2D(s,u) + repl_texture2DLod(s,u,1.) + "
                             "repl_textureCube(e,d);\n}"
                             "\nvoid main() { repl_main(); gl_FragColor = gl_FragColor.argb; }");
    EXPECT_EQ(ShaderPitcher::AddedLines(source), 3u);
    EXPECT_EQ(ShaderPitcher::AddedLines("void main() {\n}\n"), 0u);
    EXPECT_EQ(ShaderPitcher::AddedLines("void main() { c = texture2D(s,u); }"), 1u);
}

} // namespace
