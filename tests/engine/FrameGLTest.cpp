#include <cmath>

#include "tests/support/EffectTester.h"

namespace {

// Whole frames through the engine, compared with values worked out here.
class FrameGLTest : public EffectTester {
protected:
    void StartPixelShader(const std::string& expression) {
        Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader(expression)}});
    }
};

// The host's range of a depth, and what the engine gives back for a host value.
template <class Channel>
constexpr double s_Full = 1.0;
template <>
constexpr double s_Full<std::uint8_t> = 255.0;
template <>
constexpr double s_Full<std::uint16_t> = 32768.0;

// 16-bit results run to 65535 and the host adapter halves them, rounding the upper half up.
template <class Channel>
double HostValue(Channel channel) {
    if constexpr (sizeof(Channel) == 2)
        return channel > 32768 ? (channel >> 1) + 1 : channel >> 1;
    else
        return static_cast<double>(channel);
}

template <class Channel>
TestPicture<Channel> Noise(unsigned width, unsigned height) {
    TestPicture<Channel> picture(width, height);
    std::uint32_t state = 12345 + width * 31 + height;
    for (Channel& channel : picture.channels) {
        state = state * 1664525u + 1013904223u;
        const double unit = (state >> 8) / 16777215.0;
        channel = static_cast<Channel>(
            std::is_floating_point_v<Channel> ? 3.0 * unit - 1.0 : std::floor(unit * s_Full<Channel> + 0.5));
    }
    return picture;
}

// Compares a frame of the running effect with `expected(x, y, channel)`, given in host values.
template <class Channel, class Expected>
void Compare(TestPicture<Channel>& output, double tolerance, Expected expected) {
    for (unsigned y = 0; y < output.height; ++y)
        for (unsigned x = 0; x < output.width; ++x)
            for (unsigned k = 0; k < 4; ++k)
                ASSERT_NEAR(HostValue(output.At(x, y)[k]), expected(x, y, k), tolerance)
                    << "depth " << sizeof(Channel) * 8 << " of " << output.width << "x" << output.height
                    << " at " << x << "," << y << " channel " << k;
}

constexpr unsigned s_Sizes[][2] = {{1, 1}, {1, 7}, {5, 1}, {3, 5}, {17, 9}};

TEST_F(FrameGLTest, APassThroughReturnsEveryPixelAtEveryDepthAndSize) {
    StartPixelShader("c");
    const auto check = [&]<class Channel>(Channel, std::size_t padding) {
        // Filtering between texels leaves float pixels a few units in the last place off.
        constexpr double tolerance = std::is_floating_point_v<Channel> ? 4e-6 : 0.0;
        for (const auto& size : s_Sizes) {
            auto input = Noise<Channel>(size[0], size[1]);
            auto output = Frame(input, 0, padding);
            Compare(output, tolerance, [&](unsigned x, unsigned y, unsigned k) { return input.At(x, y)[k]; });
        }
    };
    check(std::uint8_t{}, 0);
    check(std::uint16_t{}, 0);
    check(float{}, 0);
    check(std::uint8_t{}, 8); // rows further apart than they are wide
    check(std::uint16_t{}, 32);
    check(float{}, 48);
}

TEST_F(FrameGLTest, ShadersSeeRedGreenBlueAlpha) {
    StartPixelShader("vec4(1.0 - c.r, c.b, 0.5 * c.g, c.a)");
    const auto check = [&]<class Channel>(Channel, double tolerance) {
        auto input = Noise<Channel>(7, 5);
        auto output = Frame(input);
        Compare(output, tolerance, [&](unsigned x, unsigned y, unsigned k) {
            const Channel* const p = input.At(x, y); // alpha, red, green, blue
            const double expected[] = {double(p[0]), s_Full<Channel> - p[1], double(p[3]), 0.5 * p[2]};
            return expected[k];
        });
    };
    check(std::uint8_t{}, 0.75);
    check(std::uint16_t{}, 1.0);
    check(float{}, 1e-6);
}

TEST_F(FrameGLTest, CoordinatesRunDownThePictureInAnUprightPass) {
    StartPixelShader("vec4(gl_TexCoord[0].x, gl_TexCoord[0].y, 0.25, 1.0)");
    auto output = Frame(TestPicture<float>(5, 3));
    Compare(output, 1e-5, [](unsigned x, unsigned y, unsigned k) {
        const double expected[] = {1.0, (x + 0.5) / 5, (y + 0.5) / 3, 0.25};
        return expected[k];
    });
}

TEST_F(FrameGLTest, APassWithoutTheFlipMirrorsTheFrame) {
    std::string script = OneShaderScript();
    script.replace(script.find("true"), 4, "false");
    Start({{"fx.js", script}, {"pixel.frag", PixelShader("c")}});
    auto input = Noise<std::uint8_t>(3, 4);
    auto output = Frame(input);
    Compare(output, 0.0, [&](unsigned x, unsigned y, unsigned k) { return input.At(x, 3 - y)[k]; });
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
    const auto set = [&](unsigned index, std::vector<float> numbers) {
        Parameter::Value value;
        for (unsigned i = 0; i < numbers.size(); ++i)
            value.SetFloat(i, numbers[i]);
        Engine().setParam(index, value);
    };
    const auto setInt = [&](unsigned index, int number) {
        Parameter::Value value;
        value.SetInt(0, number);
        Engine().setParam(index, value);
    };
    set(0, {0.5f});
    set(1, {2.0f});
    set(2, {3.0f, 4.0f});
    set(3, {1.0f, 2.0f, 3.0f});
    set(4, {1.0f, 2.0f, 3.0f, 4.0f});
    setInt(5, 1);
    setInt(6, 3);
    auto output = Frame(TestPicture<float>(1, 1));
    const double expected[] = {4321.0 + 0.5 + 0.1875, 200.5, 43.0 + 200.0, 321.0};
    Compare(output, 1e-3, [&](unsigned, unsigned, unsigned k) { return expected[k]; });
}

TEST_F(FrameGLTest, TheScriptKnowsTimeExtentAndOrigin) {
    Start({{"fx.js", "var shader;\nfunction setup() { shader = SV_initShader('pixel'); }\n"
                     "function preRender(w, h) { SV_setOutputExtent(w + 2, 0); }\n"
                     "function draw() { var e = SV_getContextExtent(), o = SV_getInputOrigin();\n"
                     "  SV_setShaderParamVal(shader, 'told', [SV_getTime(), e[0] + e[2], o[0], o[1]]);\n"
                     "  SV_renderShader(shader, SV_getSequenceRT(), true); }"},
           {"pixel.frag", "uniform vec4 told;\nvoid main() { gl_FragColor = told; }"}});
    Engine().setCompositionSize(640, 480, 1.25f);
    Engine().setInputOrigin(-7, 9);
    auto output = Frame(TestPicture<float>(3, 2), 2.5);
    EXPECT_EQ(output.width, 5u);
    EXPECT_EQ(output.height, 2u);
    const double expected[] = {9.0, 2.5, 641.25, -7.0};
    Compare(output, 1e-6, [&](unsigned, unsigned, unsigned k) { return expected[k]; });
}

TEST_F(FrameGLTest, ImagesAndLayersAreReadInTheirOwnOrder) {
    const std::string ppm =
        std::string("P6 2 2 255\n") + "\x10\x20\x30" + "\x40\x50\x60" + "\x70\x11\x12" + "\x13\x14\x15";
    Start({{"fx.js",
            "var shader, layer, image;\nfunction setup() {\n"
            "  layer = SV_initParam('map', SV_Type.LAYER, 'Map'); image = SV_initTexture('/picture.ppm');\n"
            "  SV_initTexture('/absent.png'); shader = SV_initShader('pixel'); }\n"
            "function draw() { SV_setShaderParamVal(shader, 'image', image);\n"
            "  SV_setShaderParam(shader, layer); SV_renderShader(shader, SV_getSequenceRT(), true); }"},
           {"picture.ppm", ppm},
           {"pixel.frag", "uniform sampler2D image, map;\nvoid main() {\n"
                          "  vec4 i = texture2D(image, gl_TexCoord[0].xy);\n"
                          "  vec4 m = texture2D(map, gl_TexCoord[0].xy);\n"
                          "  gl_FragColor = vec4(i.rgb, m.b); }"}});
    std::uint8_t map[16] = {0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4}; // blue counts the pixels
    {
        const ContextKeeper keeper;
        ASSERT_TRUE(Engine().lockFrame());
        Engine().grabIntoTexture(0, map, 2, 2, 8, 8);
        Engine().grabIntoTexture(1, map, 2, 2, 8, 8); // no such parameter
        Engine().releaseFrame();
    }
    auto output = Frame(TestPicture<std::uint8_t>(2, 2));
    const auto byte = [&](std::size_t i) { return double(static_cast<unsigned char>(ppm[11 + i])); };
    Compare(output, 0.0, [&](unsigned x, unsigned y, unsigned k) {
        const std::size_t pixel = y * 2 + x;
        return k == 0 ? double(pixel + 1) : byte(pixel * 3 + k - 1);
    });
}

} // namespace
