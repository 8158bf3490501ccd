#include "tests/engine/PictureTester.h"

namespace {

class FrameGLTest : public PictureTester {};

TEST_F(FrameGLTest, ACopyingShaderReturnsTheInputAtEveryDepthAndSize) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("c")}});
    for (const auto& [width, height] : {std::pair{1u, 1u}, {1u, 7u}, {5u, 1u}, {3u, 5u}, {17u, 9u}})
        for (const unsigned padding : {0u, 3u})
            ExpectFramesComeBack(width, height, padding);
}

TEST_F(FrameGLTest, ParameterValuesOfEveryTypeReachTheirUniforms) {
    Start({{"fx.js", R"js(
        var shader, all = [];
        function setup() {
            all.push(SV_initParam("f", SV_Type.FLOAT), SV_initParam("an", SV_Type.ANGLE),
                     SV_initParam("p2", SV_Type.POINT2D), SV_initParam("p3", SV_Type.POINT),
                     SV_initParam("col", SV_Type.COLOR), SV_initParam("b", SV_Type.BOOL),
                     SV_initParam("n", SV_Type.POPUP));
            shader = SV_initShader("pixel");
        }
        function draw() {
            all.forEach(function (p) { SV_setShaderParam(shader, p); });
            SV_setShaderParamVal(shader, "direct", [1, 2]);
            SV_renderShader(shader, SV_getSequenceRT(), true);
        })js"},
           {"pixel.frag", R"glsl(
        uniform float f, an; uniform vec2 p2, direct; uniform vec3 p3; uniform vec4 col;
        uniform bool b; uniform int n;
        void main() {
            gl_FragColor = vec4(f + 100.0 * an, p2.x + 10.0 * p2.y + 100.0 * direct.y,
                                p3.x + 10.0 * p3.y + 100.0 * p3.z,
                                dot(col, vec4(1.0, 10.0, 100.0, 1000.0)) + (b ? 0.5 : 0.0) + 0.0625 * float(n));
        })glsl"}});
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

TEST_F(FrameGLTest, ScriptsReadTimeCompositionSizeAndInputOrigin) {
    Start({{"fx.js", R"js(
        var shader;
        function setup() { shader = SV_initShader("pixel"); }
        function preRender(w, h) { SV_setOutputExtent(w + 2, 0); }
        function draw() {
            var e = SV_getContextExtent(), o = SV_getInputOrigin();
            SV_setShaderParamVal(shader, "answers", [SV_getTime(), e[0] + 2 * e[1] + e[2], o[0], o[1]]);
            SV_renderShader(shader, SV_getSequenceRT(), true);
        })js"},
           {"pixel.frag", "uniform vec4 answers;\nvoid main() { gl_FragColor = answers; }"}});
    Engine().setCompositionSize(640, 480, 1.25f);
    Engine().setInputOrigin(-7, 9);
    const auto output = Frame(TestPicture<float>(3, 2), 2.5);
    EXPECT_EQ(std::pair(output.width, output.height), std::pair(5u, 2u));
    const double expected[] = {9.0, 2.5, 1601.25, -7.0};
    Compare(output, 1e-6, [&](unsigned, unsigned, unsigned k) { return expected[k]; });
}

TEST_F(FrameGLTest, ScriptsDrawIntoPartsOfTargetsAndQueryTheirResources) {
    Start({{"fx.js", s_DefineIs + R"js(
        var shader, other, late;
        function setup() {
            other = SV_initRenderTarget(4, 2, 8);
            shader = SV_initShader("pixel", undefined);
            late = SV_initParam("n", SV_Type.COLOR);
        }
        function put(level, n) {
            SV_setShaderParamVal(shader, "level", level);
            SV_setShaderParamVal(shader, "n", n);
        }
        function draw() {
            put(64 / 255, 1e300);
            SV_renderShader(shader, other, false);
            put(128 / 255, 5);
            put(-12345678, -12345678);                // leaves the uniforms unchanged
            SV_setParamValue(late, [9, 9, 9, 9]);
            SV_setShaderParam(shader, late);          // of another type than the uniform
            SV_renderShader(shader, other, false, [1, 0, 2, 1]);
            SV_blitRenderTarget(other, SV_getSequenceRT(), true, false);
            is(SV_getSurfaceDim(other), [4, 2, 8]);
            is(SV_getShaderParamType(shader, "level"), SV_Type.FLOAT);
            is(SV_getShaderParamType(shader, "n"), SV_Type.POPUP);
            is(SV_setTextureParam(other, SV_GL.TEXTURE_WRAP_S), false);
            is(SV_setTextureParam(other, SV_GL.TEXTURE_WRAP_S, SV_GL.REPEAT), true);
        })js"},
           {"pixel.frag", R"glsl(
        uniform float level;
        uniform int n;
        void main() { gl_FragColor = vec4(level, float(n) / 255.0, 0.0, 1.0); })glsl"}});
    const auto output = Frame(TestPicture<std::uint8_t>(4, 2));
    EXPECT_EQ(m_Log.Text(), "");
    Compare(output, 0.0, [](unsigned x, unsigned y, unsigned k) {
        const bool isInside = y == 0 && (x == 1 || x == 2); // the lowest row, flipped
        return (isInside ? std::vector<double>{255, 128, 5, 0} : std::vector<double>{255, 64, 255, 0})[k];
    });
}

// In each row the script draws a picture of 2 x 1 pixels and 8 bits, red on the left, as the frame.
TEST_F(FrameGLTest, TargetsThatDrawChangesComeBackToTheSizeAndDepthOfTheFrame) {
    const struct {
        const char *name, *draw;
    } rows[] = {
        {"a smaller surface copied into the frame", R"js(
            SV_surfaceCopyTo(SV_textureToSurface(inner), SV_getSequenceRT());)js"},
        {"a target of the script in place of the frame's", R"js(
            SV_release(SV_getSequenceRT());
            SV_blitRenderTarget(inner, SV_initRenderTarget(2, 1, 8), false, false);)js"},
    };
    const auto check = [this]<class Channel>(Channel full) {
        auto output = Frame(TestPicture<Channel>(8, 4));
        for (const unsigned y : {0u, 3u})
            for (const unsigned x : {0u, 1u, 6u, 7u}) // the edge between the two colours is filtered
                for (const unsigned k : {0u, 1u, 2u, 3u})
                    EXPECT_EQ(output.At(x, y)[k], k == 0 || (k == 1 && x < 2) ? full : Channel{});
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Start({{"fx.js", std::string(R"js(
            var inner;
            function setup() { inner = SV_initRenderTarget(2, 1, 8); }
            function draw() {
                var half = SV_initShader("half");
                SV_renderShader(half, inner, false);
                SV_release(half);)js") +
                             row.draw + "}"},
               {"half.frag", "void main() { gl_FragColor = vec4(gl_TexCoord[0].x < 0.5, 0.0, 0.0, 1.0); }"}});
        check(std::uint8_t{255});
        check(std::uint16_t{65535});
        check(1.0f);
        Engine().release();
    }
}

TEST_F(FrameGLTest, AFrameWhoseTargetTheScriptReleasesIsRejected) {
    Start({{"fx.js", "function setup() {}\nfunction draw() { SV_release(SV_getSequenceRT()); }"}});
    ASSERT_TRUE(Engine().lockFrame());
    Engine().render(0, 4, 4, 8, 1);
    EXPECT_EQ(Engine().grabResultBegin(), nullptr);
    Engine().releaseFrame();
}

} // namespace
