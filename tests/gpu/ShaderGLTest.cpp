#include "gpu/Shader.h"

#include "tests/gpu/GLFixture.h"

namespace {

constexpr const char* s_One = "void main() { gl_FragColor = vec4(1.0); }";

class ShaderGLTest : public GLFixture {};

TEST_F(ShaderGLTest, EffectsReadRedGreenBlueAlphaOfPixelsInBothOrders) {
    const unsigned char bytes[] = {51, 102, 153, 204};
    Texture picture;
    picture.init(1, 1, 8, true);
    for (const std::string read : {"texture2D(s, vec2(0.5))", "texture2DLod(s, vec2(0.5f), 0.0)"}) {
        Shader shader;
        ASSERT_TRUE(shader.init("read", "uniform sampler2D s;\nvoid main() { vec4 c = " + read +
                                            ";\n gl_FragColor = c * vec4(1.0, 2.0, 4.0, 8.0); }"))
            << shader.errorText();
        SetTexture(shader, "s", picture);
        for (const bool alphaFirst : {true, false}) {
            picture.grabPixels(bytes, 1, 1, 8, 4, alphaFirst, false);
            const std::vector<float> argb = Drawn(shader, 1, 1);
            const float expected[2][4] = {{6.4f, 0.2f, 0.8f, 2.4f}, {1.6f, 0.4f, 1.2f, 3.2f}};
            for (std::size_t i = 0; i < 4; ++i)
                EXPECT_FLOAT_EQ(argb[i], expected[alphaFirst][i]) << read << " channel " << i;
        }
    }
}

// Each of these words is reserved in some later version of GLSL or by an extension.
TEST_F(ShaderGLTest, NamesThatLaterGlslReservesCompileWithAndWithoutLodFunctions) {
    for (const std::string read : {"texture2D(s, vec2(0.5))", "texture2DLod(s, vec2(0.5), 0.0)"}) {
        std::string source = "uniform float sample, patch, precise, subroutine, sampler2DMS;\n"
                             "uniform sampler2D s;\n"
                             "void main() { gl_FragColor = READ * (sample + patch + precise + subroutine + "
                             "sampler2DMS); }";
        source.replace(source.find("READ"), 4, read);
        Shader shader;
        EXPECT_TRUE(shader.init("names", source)) << shader.errorText();
    }
}

TEST_F(ShaderGLTest, FlipAndReverseFlipDoNotCancel) {
    Shader shader;
    ASSERT_TRUE(shader.init("t", "void main() { gl_FragColor = vec4(gl_TexCoord[0].xy, 0.0, 1.0); }"));
    for (const auto& [reverse, flip] :
         {std::pair{false, false}, {false, true}, {true, false}, {true, true}}) {
        Shader::reverseFlip = reverse;
        const std::vector<float> argb = Drawn(shader, 4, 2, flip);
        EXPECT_FLOAT_EQ(argb[1], 0.125f) << "s runs to the right";
        EXPECT_FLOAT_EQ(argb[2], reverse || flip ? 0.75f : 0.25f) << "t of the bottom row";
    }
}

TEST_F(ShaderGLTest, ADrawIsIndependentOfMatricesAndScissorAndDepthTests) {
    Shader shader;
    ASSERT_TRUE(shader.init("one", s_One));
    glMatrixMode(GL_PROJECTION);
    glOrtho(0, 1000, 0, 1000, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(5, 5, 5);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    glEnable(GL_DEPTH_TEST);
    EXPECT_EQ(Drawn(shader, 3, 3), std::vector<float>(36, 1.0f));
    EXPECT_EQ(State(GL_DEPTH_TEST), GL_FALSE);
    EXPECT_EQ(State(GL_MATRIX_MODE), GL_MODELVIEW);
    EXPECT_EQ(State(GL_MODELVIEW_STACK_DEPTH), 1);
    EXPECT_EQ(State(GL_PROJECTION_STACK_DEPTH), 1);
    EXPECT_EQ(State(GL_CURRENT_PROGRAM), static_cast<GLint>(shader.program())) << "nothing is unbound";
}

TEST_F(ShaderGLTest, AShaderWithAnErrorDrawsNothingUntilALoadSucceeds) {
    Shader shader;
    EXPECT_FALSE(shader.init("bad", "void main() {\n nonsense;\n}"));
    EXPECT_EQ(shader.errorText().rfind("Shader compilation failed:\n", 0), 0u) << shader.errorText();
    EXPECT_NE(shader.errorText().find("nonsense"), std::string::npos);
    EXPECT_FALSE(shader.begin());
    EXPECT_FALSE(shader.reload(true));
    RenderTarget target;
    target.init(1, 1, 8);
    target.set(nullptr);
    shader.render(false);
    EXPECT_EQ(Stored(target), std::vector<float>(4, 0.0f));

    EXPECT_FALSE(shader.load(std::string("void f();\nvoid main() { f(); }")));
    EXPECT_EQ(shader.errorText().rfind("Program linking failed:\n", 0), 0u) << shader.errorText();
    const std::string before = shader.errorText();
    EXPECT_FALSE(shader.load(std::string()));
    EXPECT_FALSE(shader.load(std::wstring()));
    EXPECT_EQ(shader.errorText(), before) << "empty input changes nothing";

    EXPECT_TRUE(shader.load(std::string(s_One)));
    EXPECT_EQ(shader.errorText(), "");
    EXPECT_EQ(Drawn(shader, 1, 1), std::vector<float>(4, 1.0f));
}

TEST_F(ShaderGLTest, ANameLoadsAFileOfTheResourceDirectoryAndEveryLoadReplacesTheGLObjects) {
    Utils::ReadWholeTextFileCallback = [](const std::wstring& name) {
        return name == L"/tint.frag" || name == L"/fx/tint.frag" ? s_One : std::string();
    };
    Shader shader;
    EXPECT_TRUE(shader.init("tint", ""));
    EXPECT_EQ(shader.filePath(), L"/tint.frag");
    const std::wstring directory = L"/fx";
    Shader::s_ResourceDirectory = &directory;
    EXPECT_TRUE(shader.init("tint", ""));
    EXPECT_EQ(shader.filePath(), L"/fx/tint.frag");
    EXPECT_EQ(shader.source(), s_One);
    EXPECT_TRUE(shader.reload(false));
    EXPECT_TRUE(shader.reload(true));
    EXPECT_EQ(CountObjects(), 3) << "two shaders and a program";
    EXPECT_FALSE(shader.init("gone", ""));
    EXPECT_EQ(shader.errorText(), "Shader file not found or shader is empty!");
    shader.release();
    EXPECT_EQ(CountObjects(), 0);
}

TEST_F(ShaderGLTest, CubeMapLookupsReadAnEquirectangularTexture) {
    // Four columns by two rows; the direction (0, 0, 1) is at u = 0.5, (1, 0, 0) at 0.75, up at v = 0.
    std::vector<float> pixels(4 * 2 * 4);
    for (std::size_t i = 0; i < 8; ++i)
        pixels[i * 4 + 1] = static_cast<float>(i);
    Texture picture;
    picture.init(4, 2, 32, true);
    picture.grabPixels(pixels.data(), 4, 2, 32, 64, true, false);
    picture.setParameter(GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    picture.setParameter(GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    Shader shader;
    ASSERT_TRUE(shader.init("cube", "uniform samplerCube s; uniform vec3 d;\n"
                                    "void main() { gl_FragColor = textureCube(s, d); }"))
        << shader.errorText();
    SetTexture(shader, "s", picture);
    const struct {
        float direction[3], column, row;
    } rows[] = {{{0.1f, 0.5f, 0.9f}, 2, 0}, {{0.9f, 0.5f, -0.1f}, 3, 0}, {{-0.9f, -0.5f, 0.1f}, 1, 1}};
    for (const auto& row : rows) {
        for (unsigned i = 0; i < 3; ++i)
            shader.getParameterInfo("d").value.SetFloat(i, row.direction[i]);
        EXPECT_EQ(Drawn(shader, 1, 1)[1], row.row * 4 + row.column);
    }
}

} // namespace
