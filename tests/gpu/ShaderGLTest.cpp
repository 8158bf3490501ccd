#include "gpu/Shader.h"

#include <map>

#include "engine/utils/Utils.h"
#include "tests/gpu/GLFixture.h"

namespace {

constexpr const char* s_Copy = "uniform sampler2D s;\n"
                               "void main() {\n gl_FragColor = texture2D(s, gl_TexCoord[0].xy);\n}";
constexpr const char* s_Invert = "uniform sampler2D s;\nvoid main() {\n"
                                 " vec4 c = texture2D(s, gl_TexCoord[0].xy);\n"
                                 " gl_FragColor = vec4(1.0 - c.r, 1.0 - c.g, 1.0 - c.b, c.a);\n}";

class ShaderGLTest : public GLFixture {
protected:
    void TearDown() override {
        Utils::ReadWholeTextFileCallback = nullptr;
        Shader::s_ResourceDirectory = nullptr;
        Shader::reverseFlip = false;
        GLFixture::TearDown();
    }

    static void Draw(Shader& shader, RenderTarget& target, bool flip = false) {
        target.set(nullptr);
        ASSERT_TRUE(shader.begin()) << shader.errorText();
        shader.render(flip);
        shader.end();
    }

    static void SetTexture(Shader& shader, const char* name, const Texture& texture) {
        shader.getParameterInfo(name).value.SetInt(0, static_cast<std::int32_t>(texture.id()));
    }
};

// Draws a 5 x 3 picture of counted channels through the shader and returns bytes at the target's depth.
template <class Channel>
std::vector<Channel> DrawCounted(Shader& shader, unsigned depth, const std::vector<Channel>& pixels) {
    Texture picture;
    picture.init(5, 3, depth, true);
    picture.grabPixels(pixels.data(), 5, 3, depth, 5 * 4 * sizeof(Channel), true, false);
    RenderTarget target;
    target.init(5, 3, depth);
    shader.getParameterInfo("s").value.SetInt(0, static_cast<std::int32_t>(picture.id()));
    target.set(nullptr);
    shader.begin();
    shader.render(false);
    const auto* mapped = static_cast<const Channel*>(target.grabBegin());
    std::vector<Channel> result(mapped, mapped + 60);
    target.grabEnd(nullptr);
    return result;
}

template <class Channel>
void ExpectInvert(unsigned depth, Channel step, Channel one) {
    std::vector<Channel> pixels(60);
    for (std::size_t i = 0; i < 60; ++i)
        pixels[i] = static_cast<Channel>(static_cast<Channel>(i) * step);
    Shader copy, invert;
    ASSERT_TRUE(copy.init("copy", s_Copy)) << copy.errorText();
    ASSERT_TRUE(invert.init("invert", s_Invert)) << invert.errorText();
    const std::vector<Channel> copied = DrawCounted(copy, depth, pixels);
    const std::vector<Channel> inverted = DrawCounted(invert, depth, pixels);
    for (std::size_t i = 0; i < 60; ++i) {
        const bool isAlpha = i % 4 == 0; // the first channel in memory
        const double expected = isAlpha ? double(pixels[i]) : double(one) - double(pixels[i]);
        EXPECT_NEAR(double(copied[i]), double(pixels[i]), 1e-6) << "depth " << depth << " channel " << i;
        EXPECT_NEAR(double(inverted[i]), expected, 1e-6) << "depth " << depth << " channel " << i;
    }
}

TEST_F(ShaderGLTest, EffectsSeeRedGreenBlueAlphaAtEveryDepth) {
    ExpectInvert<std::uint8_t>(8, 4, 255);
    ExpectInvert<std::uint16_t>(16, 1100, 65535);
    ExpectInvert<float>(32, 0.03125f, 1.0f);
}

TEST_F(ShaderGLTest, DecodedPicturesLookTheSameToEffects) {
    const unsigned char rgba[] = {255, 102, 51, 204};
    Texture picture;
    picture.init(1, 1, 8, true);
    picture.grabPixels(rgba, 1, 1, 8, 4, false, false);
    RenderTarget target;
    target.init(1, 1, 32);
    Shader shader;
    ASSERT_TRUE(shader.init("copy", s_Copy));
    SetTexture(shader, "s", picture);
    Draw(shader, target);
    const std::vector<float> argb = ReadFloats(target);
    const float expected[] = {0.8f, 1.0f, 0.4f, 0.2f};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(argb[i], expected[i], 1e-6);
}

TEST_F(ShaderGLTest, FlipAndReverseFlipDoNotCancel) {
    Shader shader;
    ASSERT_TRUE(shader.init("t", "void main() { gl_FragColor = vec4(gl_TexCoord[0].xy, 0.0, 1.0); }"));
    RenderTarget target;
    target.init(4, 2, 32);
    for (const bool reverse : {false, true})
        for (const bool flip : {false, true}) {
            Shader::reverseFlip = reverse;
            Draw(shader, target, flip);
            const std::vector<float> argb = ReadFloats(target);
            EXPECT_FLOAT_EQ(argb[1], 0.125f) << "s runs to the right";
            EXPECT_FLOAT_EQ(argb[2], reverse || flip ? 0.75f : 0.25f) << "t of the bottom row";
        }
}

TEST_F(ShaderGLTest, DrawsWhateverTheCallersMatricesAndTests) {
    Shader shader;
    ASSERT_TRUE(shader.init("one", "void main() { gl_FragColor = vec4(1.0); }"));
    RenderTarget target;
    target.init(3, 3, 8);
    glMatrixMode(GL_PROJECTION);
    glOrtho(0, 1000, 0, 1000, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(5, 5, 5);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    glEnable(GL_DEPTH_TEST);
    Draw(shader, target);
    EXPECT_EQ(ReadFloats(target), std::vector<float>(36, 1.0f));
    EXPECT_EQ(State(GL_MATRIX_MODE), GL_MODELVIEW);
    EXPECT_EQ(State(GL_MODELVIEW_STACK_DEPTH), 1);
    EXPECT_EQ(State(GL_PROJECTION_STACK_DEPTH), 1);
    EXPECT_EQ(State(GL_CURRENT_PROGRAM), static_cast<GLint>(shader.program())) << "nothing is unbound";
}

TEST_F(ShaderGLTest, ErrorsMakeItInertUntilALoadSucceeds) {
    Shader shader;
    EXPECT_FALSE(shader.init("bad", "void main() {\n nonsense;\n}"));
    EXPECT_EQ(shader.errorText().rfind("Shader compilation failed:\n", 0), 0u) << shader.errorText();
    EXPECT_NE(shader.errorText().find("nonsense"), std::string::npos);
    EXPECT_TRUE(shader.usable()) << "the GL objects stay";
    EXPECT_FALSE(shader.begin());
    RenderTarget target;
    target.init(1, 1, 8);
    target.set(nullptr);
    shader.render(false);
    EXPECT_EQ(ReadFloats(target), std::vector<float>(4, 0.0f));

    EXPECT_FALSE(shader.load(std::string("void f();\nvoid main() { f(); }")));
    EXPECT_EQ(shader.errorText().rfind("Program linking failed:\n", 0), 0u) << shader.errorText();
    const std::string before = shader.errorText();
    EXPECT_FALSE(shader.load(std::string()));
    EXPECT_FALSE(shader.load(std::wstring()));
    EXPECT_EQ(shader.errorText(), before) << "empty input changes nothing";

    EXPECT_TRUE(shader.load(std::string(s_Copy)));
    EXPECT_EQ(shader.errorText(), "");
    EXPECT_TRUE(shader.begin());
}

TEST_F(ShaderGLTest, FilesComeFromTheResourceDirectory) {
    Utils::ReadWholeTextFileCallback = [](const std::wstring& name) {
        const std::map<std::wstring, std::string> files = {{L"/tint.frag", s_Copy},
                                                           {L"/fx/tint.frag", s_Invert}};
        const auto found = files.find(name);
        return found != files.end() ? found->second : std::string();
    };
    Shader shader;
    EXPECT_TRUE(shader.init("tint", ""));
    EXPECT_EQ(shader.source(), s_Copy);
    EXPECT_EQ(shader.name(), L"tint");
    EXPECT_EQ(shader.filePath(), L"/tint.frag");
    const std::wstring directory = L"/fx";
    Shader::s_ResourceDirectory = &directory;
    EXPECT_TRUE(shader.init("tint", ""));
    EXPECT_EQ(shader.source(), s_Invert);
    EXPECT_TRUE(shader.reload(false));

    EXPECT_FALSE(shader.init("gone", ""));
    EXPECT_EQ(shader.errorText(), "Shader file not found or shader is empty!");
}

TEST_F(ShaderGLTest, ReloadMakesEverythingAnew) {
    Shader shader;
    EXPECT_FALSE(shader.init("bad", "void main() { nonsense; }"));
    EXPECT_FALSE(shader.reload(true));
    ASSERT_TRUE(shader.init("copy", s_Copy));
    const int objects = CountObjects();
    EXPECT_TRUE(shader.reload(true));
    EXPECT_EQ(CountObjects(), objects);
    EXPECT_TRUE(shader.begin());
    EXPECT_FALSE(shader.reload(false)) << "it has no file";
    EXPECT_EQ(shader.errorText(), "");
    shader.release();
    EXPECT_FALSE(shader.usable());
    glUseProgram(0);
    EXPECT_EQ(CountObjects(), 0);
}

TEST_F(ShaderGLTest, CubeLookupsReadAnEquirectangularPicture) {
    // Four columns by two rows; the direction (0, 0, 1) lies at u = 0.5, (1, 0, 0) at 0.75, up at v = 0.
    std::vector<float> pixels(4 * 2 * 4, 0.0f);
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
    RenderTarget target;
    target.init(1, 1, 32);
    const struct {
        float direction[3], column, row;
    } rows[] = {{{0.1f, 0.5f, 0.9f}, 2, 0}, {{0.9f, 0.5f, -0.1f}, 3, 0}, {{-0.9f, -0.5f, 0.1f}, 1, 1}};
    for (const auto& row : rows) {
        for (unsigned i = 0; i < 3; ++i)
            shader.getParameterInfo("d").value.SetFloat(i, row.direction[i]);
        Draw(shader, target);
        EXPECT_EQ(ReadFloats(target)[1], row.row * 4 + row.column);
    }
}

} // namespace
