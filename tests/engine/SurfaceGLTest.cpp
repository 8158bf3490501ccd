#include "tests/support/EffectTester.h"

namespace {

// Pixels on their way between textures, CPU surfaces and targets.
class SurfaceGLTest : public EffectTester {
protected:
    // An effect whose draw() is this text, with a shader that copies "image" upright.
    void StartDraw(const std::string& draw, std::map<std::string, std::string> files = {}) {
        files["fx.js"] =
            "var copy, layer, image;\nfunction setup() { copy = SV_initShader('copy');\n"
            "  layer = SV_initParam('layer', SV_Type.LAYER); image = SV_initTexture('/image.ppm'); }\n"
            "function show(texture) { SV_setShaderParamVal(copy, 'image', texture);\n"
            "  SV_renderShader(copy, SV_getSequenceRT(), true); }\nfunction draw() {" +
            draw + "}";
        files["copy.frag"] = "uniform sampler2D image;\n"
                             "void main() { gl_FragColor = texture2D(image, gl_TexCoord[0].xy); }";
        Start(std::move(files));
    }
};

TestPicture<std::uint8_t> Ramp(unsigned width, unsigned height) {
    TestPicture<std::uint8_t> picture(width, height);
    for (std::size_t i = 0; i < picture.channels.size(); ++i)
        picture.channels[i] = static_cast<std::uint8_t>(i * 7);
    return picture;
}

TEST_F(SurfaceGLTest, EveryRoadThroughTheCpuKeepsPixelsAndOrientation) {
    const char* const roads[] = {
        // input texture, surface, target: the target's first row is the last one shown
        "var s = SV_textureToSurface(SV_getSequenceTexture());"
        "SV_surfaceCopyTo(s, SV_getSequenceRT(), true); SV_release(s);",
        // target, surface, texture
        "show(SV_getSequenceTexture()); var s = SV_textureToSurface(SV_getSequenceRT());"
        "var t = SV_surfaceToTexture(s); SV_renderShader(copy, SV_getSequenceRT(), true);"
        "SV_setShaderParamVal(copy, 'image', t); SV_renderShader(copy, SV_getSequenceRT(), false);"
        "SV_release(s); SV_release(t);",
        // the surface outlives its texture
        "var t = SV_surfaceToTexture(SV_textureToSurface(SV_getSequenceTexture()));"
        "var s = SV_textureToSurface(t); SV_release(t); var u = SV_surfaceToTexture(s); SV_release(s); "
        "show(u);",
    };
    for (const char* const road : roads) {
        StartDraw(road);
        auto bytes = Ramp(5, 3);
        EXPECT_EQ(Frame(bytes).channels, bytes.channels) << road;
        TestPicture<float> floats(3, 2);
        for (std::size_t i = 0; i < floats.channels.size(); ++i)
            floats.channels[i] = static_cast<float>(i) * 0.25f - 1.0f;
        const auto result = Frame(floats);
        for (std::size_t i = 0; i < floats.channels.size(); ++i)
            EXPECT_NEAR(result.channels[i], floats.channels[i], 4e-6) << road;
        TestPicture<std::uint16_t> words(2, 3);
        for (std::size_t i = 0; i < words.channels.size(); ++i)
            words.channels[i] = static_cast<std::uint16_t>(i * 1365);
        const auto wide = Frame(words);
        for (std::size_t i = 0; i < words.channels.size(); ++i)
            EXPECT_EQ((wide.channels[i] >> 1) + (wide.channels[i] > 32768), words.channels[i]) << road;
        Engine().release();
    }
}

TEST_F(SurfaceGLTest, ImagesAndLayersComeInTheSameOrder) {
    const std::string ppm = std::string("P6 1 1 255\n") + "\x11\x22\x33";
    StartDraw("show(SV_surfaceToTexture(SV_textureToSurface(SV_getTime() > 0 ? layer : image)));",
              {{"image.ppm", ppm}});
    TestPicture<std::uint8_t> input(1, 1);
    EXPECT_EQ(Frame(input, 0).channels, (std::vector<std::uint8_t>{255, 0x11, 0x22, 0x33}));
    std::uint8_t pixel[4] = {9, 8, 7, 6};
    {
        const ContextKeeper keeper;
        ASSERT_TRUE(Engine().lockFrame());
        Engine().grabIntoTexture(0, pixel, 1, 1, 8, 4);
        Engine().releaseFrame();
    }
    EXPECT_EQ(Frame(input, 1).channels, (std::vector<std::uint8_t>{9, 8, 7, 6}));
}

TEST_F(SurfaceGLTest, QuantizingFollowsSelectorAndScriptMode) {
    StartDraw("var t = SV_getTime(), s = SV_textureToSurface(SV_getSequenceTexture());"
              "var done = t < 0 ? SV_surfaceQuantize(s, 0, 14, 2, 0, false)" // no such dithering
              " : t < 1 ? SV_surfaceQuantize(s, 0, 14, 1, 0, false)"         // black cyan magenta grey
              " : t < 2 ? SV_surfaceQuantize(s, 0, 1, 1, 0.5, false)"        // by the red channel
              " : SV_surfaceQuantize(s, 0, 8, 1, 0, false);"                 // no such palette
              "if (done === true) SV_surfaceCopyTo(s, SV_getSequenceRT(), true); SV_release(s);");
    TestPicture<std::uint8_t> input(2, 2);
    input.channels = {255, 250, 10, 240, 255, 20, 30, 10, 255, 128, 200, 190, 255, 127, 255, 255};
    EXPECT_EQ(Frame(input, -1).channels, input.channels);
    EXPECT_EQ(Frame(input, 0).channels, (std::vector<std::uint8_t>{255, 170, 0, 170, 255, 0, 0, 0, 255, 170,
                                                                   170, 170, 255, 170, 170, 170}));
    EXPECT_EQ(Frame(input, 1).channels, (std::vector<std::uint8_t>{255, 255, 255, 255, 255, 0, 0, 0, 255, 255,
                                                                   255, 255, 255, 0, 0, 0}));
    EXPECT_EQ(Frame(input, 2).channels, input.channels);
}

} // namespace
