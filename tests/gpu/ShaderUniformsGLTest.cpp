#include "tests/gpu/GLFixture.h"

namespace {

class ShaderUniformsGLTest : public GLFixture {};

TEST_F(ShaderUniformsGLTest, UniformsGetTheParameterTypesOfTheirDeclarations) {
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
    std::map<std::string, std::pair<Parameter::Type, std::uint32_t>> found; // and the array size
    for (const Parameter& parameter : shader.parameters()) {
        found[parameter.name.substr(0, parameter.name.find('['))] = {parameter.type, parameter.arraySize};
        EXPECT_EQ(parameter.uniformLocation, glGetUniformLocation(shader.program(), parameter.name.c_str()));
    }
    const decltype(found) expected = {
        {"f", {Parameter::FLOAT, 1}},       {"time", {Parameter::FLOAT, 1}},
        {"p2", {Parameter::POINT2D, 1}},    {"p3", {Parameter::POINT, 1}},
        {"c", {Parameter::COLOR, 1}},       {"b", {Parameter::BOOL, 1}},
        {"i", {Parameter::POPUP, 1}},       {"s", {Parameter::LAYER, 1}},
        {"sInput0", {Parameter::LAYER, 1}}, {"m", {Parameter::UNKNOWN, 1}},
        {"iv", {Parameter::UNKNOWN, 1}},    {"s_Texture0Params", {Parameter::COLOR, 1}},
        {"list", {Parameter::UNKNOWN, 4}}};
    EXPECT_EQ(found, expected) << "nothing that is unused";
    for (const char* const name : {"time", "sInput0", "s_Texture0Params"})
        EXPECT_TRUE(shader.getParameterInfo(name).engineSupplied) << name;
    EXPECT_FALSE(shader.getParameterInfo("s").engineSupplied);
}

TEST_F(ShaderUniformsGLTest, SamplersGetUnitsInListOrderAndTheirSizeUniforms) {
    Shader shader;
    ASSERT_TRUE(shader.init(
        "t", "uniform sampler2D first, second; uniform vec4 s_Texture0Params, Texture1Params;\n"
             "void main() { vec4 a = texture2D(first, vec2(0.5)); vec4 b = texture2D(second, vec2(0.5));\n"
             " gl_FragColor = vec4(a.r, b.r, s_Texture0Params.x * 100.0 + Texture1Params.y,\n"
             " s_Texture0Params.w + Texture1Params.z); }"))
        << shader.errorText();
    const bool firstIsFirst = shader.getParamLocation("first") < shader.getParamLocation("second");
    const std::string names[] = {firstIsFirst ? "first" : "second", firstIsFirst ? "second" : "first"};
    const unsigned width[] = {2, 8}, height[] = {4, 16};
    Texture textures[2];
    for (unsigned unit = 0; unit < 2; ++unit) {
        Texture& texture = textures[unit];
        const std::vector<float> pixels(width[unit] * height[unit] * 4, names[unit] == "first" ? 1.0f : 2.0f);
        texture.init(1, 1, 32, true);
        texture.grabPixels(pixels.data(), width[unit], height[unit], 32, width[unit] * 16L, true, false);
        SetTexture(shader, names[unit], texture);
    }
    for (int draw = 0; draw < 2; ++draw) // every draw counts the units from 0
        EXPECT_EQ(Drawn(shader, 1, 1), (std::vector<float>{1.0f / 4 + 1.0f / 8, 1, 2, 2 * 100 + 16}));
}

TEST_F(ShaderUniformsGLTest, LocationsAreCachedUntilALoadAndIndicesForEver) {
    Shader shader;
    ASSERT_TRUE(shader.init("l", "uniform float a, b; void main() { gl_FragColor = vec4(a, b, 0.0, 0.0); }"));
    EXPECT_EQ(shader.getUniformLocation("misspelt"), -1);
    EXPECT_EQ(shader.getParamLocation("misspelt"), -1);
    const std::string second = shader.parameters()[1].name;
    EXPECT_EQ(shader.getParamLocation(second.c_str()), 1);

    ASSERT_TRUE(
        shader.load(std::string("uniform float misspelt; void main() { gl_FragColor = vec4(misspelt); }")));
    EXPECT_NE(shader.getUniformLocation("misspelt"), -1) << "a load asks anew";
    EXPECT_EQ(shader.getParamLocation("misspelt"), 0);
    EXPECT_EQ(shader.getParamLocation(second.c_str()), 1) << "indices stay, even stale";
    EXPECT_EQ(shader.getParameterInfo(second).name, "") << "but never lead out of the list";
}

} // namespace
