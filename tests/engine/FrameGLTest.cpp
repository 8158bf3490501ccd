#include "scripting/Scripting.h"
#include "tests/engine/PictureTester.h"

namespace {

class FrameGLTest : public PictureTester {};

TEST_F(FrameGLTest, APassThroughReturnsEveryPixelAtEveryDepthAndSize) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("c")}});
    for (const auto& [width, height] : {std::pair{1u, 1u}, {1u, 7u}, {5u, 1u}, {3u, 5u}, {17u, 9u}})
        for (const unsigned padding : {0u, 3u})
            ExpectFramesComeBack(width, height, padding);
}

TEST_F(FrameGLTest, ParametersOfEveryShapeReachTheShader) {
    Start({{"fx.js", "var shader, all = [];\nfunction setup() {\n"
                     "  all.push(SV_initParam('f', SV_Type.FLOAT), SV_initParam('an', SV_Type.ANGLE),"
                     " SV_initParam('p2', SV_Type.POINT2D), SV_initParam('p3', SV_Type.POINT),"
                     " SV_initParam('col', SV_Type.COLOR), SV_initParam('b', SV_Type.BOOL),"
                     " SV_initParam('n', SV_Type.POPUP));\n  shader = SV_initShader('pixel');\n}\n"
                     "function draw() { all.forEach(function (p) { SV_setShaderParam(shader, p); });\n"
                     "  SV_setShaderParamVal(shader, 'direct', [1, 2]);\n"
                     "  SV_renderShader(shader, SV_getSequenceRT(), true); }"},
           {"pixel.frag",
            "uniform float f, an; uniform vec2 p2, direct; uniform vec3 p3; uniform vec4 col;\n"
            "uniform bool b; uniform int n;\n"
            "void main() { gl_FragColor = vec4(f + 100.0 * an, p2.x + 10.0 * p2.y + 100.0 * direct.y,\n"
            " p3.x + 10.0 * p3.y + 100.0 * p3.z,\n"
            " dot(col, vec4(1.0, 10.0, 100.0, 1000.0)) + (b ? 0.5 : 0.0) + 0.0625 * float(n)); }"}});
    Parameter::Value values[7];
    const float floats[5][4] = {{0.5f}, {2}, {3, 4}, {1, 2, 3}, {1, 2, 3, 4}};
    for (unsigned i = 0; i < 20; ++i)
        values[i / 4].SetFloat(i % 4, floats[i / 4][i % 4]);
    values[5].SetInt(0, 1);
    values[6].SetInt(0, 3);
    for (unsigned index = 0; index < 7; ++index)
        Engine().setParam(index, values[index]);
    const double expected[] = {4321.0 + 0.5 + 0.1875, 200.5, 43.0 + 200.0, 321.0};
    Compare(Frame(TestPicture<float>(1, 1)), 1e-3,
            [&](unsigned, unsigned, unsigned k) { return expected[k]; });
}

TEST_F(FrameGLTest, TheScriptKnowsTimeExtentAndOrigin) {
    Start({{"fx.js",
            "var shader;\nfunction setup() { shader = SV_initShader('pixel'); }\n"
            "function preRender(w, h) { SV_setOutputExtent(w + 2, 0); }\n"
            "function draw() { var e = SV_getContextExtent(), o = SV_getInputOrigin();\n"
            "  SV_setShaderParamVal(shader, 'told', [SV_getTime(), e[0] + 2 * e[1] + e[2], o[0], o[1]]);\n"
            "  SV_renderShader(shader, SV_getSequenceRT(), true); }"},
           {"pixel.frag", "uniform vec4 told;\nvoid main() { gl_FragColor = told; }"}});
    Engine().setCompositionSize(640, 480, 1.25f);
    Engine().setInputOrigin(-7, 9);
    const auto output = Frame(TestPicture<float>(3, 2), 2.5);
    EXPECT_EQ(std::pair(output.width, output.height), std::pair(5u, 2u));
    const double expected[] = {9.0, 2.5, 1601.25, -7.0};
    Compare(output, 1e-6, [&](unsigned, unsigned, unsigned k) { return expected[k]; });
}

TEST_F(FrameGLTest, ScriptsDrawPartsOfOtherTargetsAndAskWhatTheyHave) {
    Start({{"fx.js",
            "var shader, other, late;\nfunction setup() { other = SV_initRenderTarget(4, 2, 8);\n"
            "  shader = SV_initShader('pixel', undefined); late = SV_initParam('n', SV_Type.COLOR); }\n"
            "function put(value, n) { SV_setShaderParamVal(shader, 'level', value);\n"
            "  SV_setShaderParamVal(shader, 'n', n); }\nfunction draw() {\n"
            "  put(64 / 255, 1e300); SV_renderShader(shader, other, false);\n"
            "  put(128 / 255, 5); put(-12345678, -12345678);\n" // numbers that leave the uniform alone
            "  SV_setParamValue(late, [9, 9, 9, 9]); SV_setShaderParam(shader, late);\n" // another type
            "  SV_renderShader(shader, other, false, [1, 0, 2, 1]);\n"
            "  SV_blitRenderTarget(other, SV_getSequenceRT(), true, false);\n"
            "  throw JSON.stringify([SV_getSurfaceDim(other), SV_getShaderParamType(shader, 'level'),\n"
            "    SV_getShaderParamType(shader, 'n'), SV_setTextureParam(other, SV_GL.TEXTURE_WRAP_S),\n"
            "    SV_setTextureParam(other, SV_GL.TEXTURE_WRAP_S, SV_GL.REPEAT)]); }"},
           {"pixel.frag", "uniform float level;\nuniform int n;\n"
                          "void main() { gl_FragColor = vec4(level, float(n) / 255.0, 0.0, 1.0); }"}});
    static std::string s_Answers;
    Scripting::ErrorCallback = [](const ScriptError& error) { s_Answers = error.message; };
    const auto output = Frame(TestPicture<std::uint8_t>(4, 2));
    Scripting::ErrorCallback = nullptr;
    EXPECT_EQ(s_Answers, "[[4,2,8],1,9,false,true]");
    Compare(output, 0.0, [](unsigned x, unsigned y, unsigned k) {
        const bool isInside = y == 0 && (x == 1 || x == 2); // the lowest row, mirrored
        return (isInside ? std::vector<double>{255, 128, 5, 0} : std::vector<double>{255, 64, 255, 0})[k];
    });
}

} // namespace
