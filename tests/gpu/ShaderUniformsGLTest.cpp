#include "gpu/Shader.h"
#include "tests/gpu/GLFixture.h"

namespace {

class ShaderUniformsGLTest : public GLFixture {
protected:
    void TearDown() override {
        Shader::s_GlobalParameters = nullptr;
        GLFixture::TearDown();
    }

    // The one pixel that the shader draws, as the effect wrote it: red, green, blue, alpha.
    static std::vector<float> Pixel(Shader& shader) {
        RenderTarget target;
        target.init(1, 1, 32);
        target.set(nullptr);
        EXPECT_TRUE(shader.begin()) << shader.errorText();
        shader.render(false);
        const std::vector<float> argb = ReadFloats(target);
        return {argb[1], argb[2], argb[3], argb[0]};
    }
};

TEST_F(ShaderUniformsGLTest, TypesFollowTheDeclarations) {
    Shader shader;
    ASSERT_TRUE(shader.init(
        "u", "uniform float f, time; uniform vec2 p2; uniform vec3 p3; uniform vec4 c;\n"
             "uniform bool b; uniform int i; uniform sampler2D s, sInput0;\n"
             "uniform float list[4]; uniform mat4 m; uniform ivec2 iv; uniform float unused;\n"
             "uniform vec4 s_Texture0Params;\n"
             "void main() { gl_FragColor = vec4(f + time + p2.x + p3.x + c.x + float(b) + float(i)\n"
             " + texture2D(s, p2).r + texture2D(sInput0, p2).r + list[2] + list[i] + m[0][0]\n"
             " + float(iv.x) + s_Texture0Params.x); }"))
        << shader.errorText();
    EXPECT_EQ(shader.errorText(), "");
    const struct {
        const char* name;
        Parameter::Type type;
        bool engineSupplied;
    } rows[] = {
        {"f", Parameter::FLOAT, false},      {"time", Parameter::FLOAT, true},
        {"p2", Parameter::POINT2D, false},   {"p3", Parameter::POINT, false},
        {"c", Parameter::COLOR, false},      {"b", Parameter::BOOL, false},
        {"i", Parameter::POPUP, false},      {"s", Parameter::LAYER, false},
        {"sInput0", Parameter::LAYER, true}, {"m", Parameter::UNKNOWN, false},
        {"iv", Parameter::UNKNOWN, false},   {"s_Texture0Params", Parameter::COLOR, true},
    };
    for (const auto& row : rows) {
        const Parameter& parameter = shader.getParameterInfo(row.name);
        EXPECT_EQ(parameter.name, row.name);
        EXPECT_EQ(parameter.type, row.type) << row.name;
        EXPECT_EQ(parameter.engineSupplied, row.engineSupplied) << row.name;
        EXPECT_EQ(parameter.arraySize, 1u) << row.name;
        EXPECT_EQ(parameter.uniformLocation, glGetUniformLocation(shader.program(), row.name));
    }
    EXPECT_EQ(shader.parameters().size(), std::size(rows) + 1) << "and the array, but nothing unused";
    EXPECT_EQ(shader.getParameterInfo("unused").name, "");
    EXPECT_EQ(shader.getParameterInfo("unused").type, Parameter::UNKNOWN);
    for (const Parameter& parameter : shader.parameters())
        if (parameter.name.rfind("list", 0) == 0) {
            EXPECT_EQ(parameter.arraySize, 4u);
            EXPECT_EQ(parameter.type, Parameter::UNKNOWN);
        }
}

TEST_F(ShaderUniformsGLTest, ValuesArriveByType) {
    Shader shader;
    ASSERT_TRUE(
        shader.init("v", "uniform float f; uniform vec2 p; uniform vec3 q; uniform vec4 c; uniform bool b;\n"
                         "uniform int i;\nvoid main() { gl_FragColor = b ? vec4(f, p.y, q.z, c.w)\n"
                         " : vec4(float(i)); }"));
    const struct {
        const char* name;
        unsigned component;
        float value;
    } rows[] = {{"f", 0, 1.5f}, {"p", 1, -2.5f}, {"q", 2, 3.5f}, {"c", 3, 4.5f}};
    for (const auto& row : rows)
        shader.getParameterInfo(row.name).value.SetFloat(row.component, row.value);
    shader.getParameterInfo("i").value.SetInt(0, -7);
    EXPECT_EQ(Pixel(shader), std::vector<float>(4, -7.0f));
    shader.getParameterInfo("b").value.SetInt(0, 2);
    EXPECT_EQ(Pixel(shader), (std::vector<float>{1.5f, -2.5f, 3.5f, 4.5f}));
}

class TwoParameters final : public ParametersHolder {
public:
    unsigned int GetNumParams() const override { return 2; }
    Parameter& GetParamByIdx(unsigned int index) const override { return m_Two[index]; }

private:
    mutable Parameter m_Two[2] = {Parameter("turn", Parameter::ANGLE, ""),
                                  Parameter("turn", Parameter::PATH, "")};
};

TEST_F(ShaderUniformsGLTest, GlobalParametersLendTheirType) {
    TwoParameters globals;
    Shader::s_GlobalParameters = &globals;
    Shader shader;
    ASSERT_TRUE(
        shader.init("g", "uniform float turn, other; void main() { gl_FragColor = vec4(turn + other); }"));
    EXPECT_EQ(shader.getParameterInfo("turn").type, Parameter::ANGLE) << "the first of the name";
    EXPECT_EQ(shader.getParameterInfo("other").type, Parameter::FLOAT);
    shader.getParameterInfo("turn").value.SetFloat(0, 90.0f);
    EXPECT_EQ(Pixel(shader)[0], 90.0f);
}

TEST_F(ShaderUniformsGLTest, SamplersGetUnitsInListOrderAndTheirExtents) {
    Shader shader;
    ASSERT_TRUE(shader.init(
        "t", "uniform sampler2D first, second; uniform vec4 s_Texture0Params, Texture1Params;\n"
             "void main() { vec4 a = texture2D(first, vec2(0.5)); vec4 b = texture2D(second, vec2(0.5));\n"
             " gl_FragColor = vec4(a.r, b.r, s_Texture0Params.x * 100.0 + Texture1Params.y,\n"
             " s_Texture0Params.w + Texture1Params.z); }"))
        << shader.errorText();
    Texture textures[2];
    const float level[] = {0.25f, 0.75f};
    const unsigned width[] = {2, 8}, height[] = {4, 16};
    std::vector<const Parameter*> samplers;
    for (const Parameter& parameter : shader.parameters())
        if (parameter.type == Parameter::LAYER)
            samplers.push_back(&parameter);
    ASSERT_EQ(samplers.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        const std::vector<float> pixels(std::size_t(width[i]) * height[i] * 4, level[i]);
        textures[i].init(1, 1, 32, true);
        textures[i].grabPixels(pixels.data(), width[i], height[i], 32, static_cast<long>(width[i]) * 16, true,
                               false);
        shader.getParameterInfo(samplers[i]->name)
            .value.SetInt(0, static_cast<std::int32_t>(textures[i].id()));
    }
    const bool firstIsFirst = samplers[0]->name == "first";
    for (int draw = 0; draw < 2; ++draw) {
        const std::vector<float> pixel = Pixel(shader);
        EXPECT_EQ(pixel[0], level[firstIsFirst ? 0 : 1]);
        EXPECT_EQ(pixel[1], level[firstIsFirst ? 1 : 0]);
        EXPECT_EQ(pixel[2], 2.0f * 100.0f + 16.0f) << "width on unit 0, height on unit 1";
        EXPECT_EQ(pixel[3], 1.0f / 4.0f + 1.0f / 8.0f);
        for (int unit = 0; unit < 2; ++unit) {
            GLint location = glGetUniformLocation(shader.program(),
                                                  samplers[static_cast<std::size_t>(unit)]->name.c_str());
            GLint value = -1;
            glGetUniformiv(shader.program(), location, &value);
            EXPECT_EQ(value, unit) << "draw " << draw;
        }
    }
}

TEST_F(ShaderUniformsGLTest, LocationsAndIndicesAreRemembered) {
    Shader shader;
    ASSERT_TRUE(shader.init("l", "uniform float a, b; void main() { gl_FragColor = vec4(a, b, 0.0, 0.0); }"));
    EXPECT_EQ(shader.getUniformLocation("misspelt"), -1);
    EXPECT_EQ(shader.getParamLocation("misspelt"), -1);
    const int last = shader.getParamLocation(shader.parameters()[1].name.c_str());
    EXPECT_EQ(last, 1);
    const std::string name = shader.parameters()[1].name;

    ASSERT_TRUE(
        shader.load(std::string("uniform float misspelt; void main() { gl_FragColor = vec4(misspelt); }")));
    EXPECT_NE(shader.getUniformLocation("misspelt"), -1) << "a load asks anew";
    EXPECT_EQ(shader.getParamLocation("misspelt"), 0);
    EXPECT_EQ(shader.getParamLocation(name.c_str()), 1) << "indices stay, even stale";
    EXPECT_EQ(shader.getParameterInfo(name).name, "") << "but never lead out of the list";
}

} // namespace
