#include "tests/engine/PictureTester.h"

namespace {

// Pixels on their way between textures, CPU surfaces and targets.
class SurfaceGLTest : public PictureTester {
protected:
    // An effect whose draw() is this text, with a shader that copies "image" upright.
    void StartDraw(const std::string& draw, std::map<std::string, std::string> files = {}) {
        files["fx.js"] =
            "var copy, layer, image;\nfunction setup() { copy = SV_initShader('copy');\n"
            "  layer = SV_initParam('image', SV_Type.LAYER); image = SV_initTexture('/image.ppm'); }\n"
            "function show(picture) { if (picture === layer) SV_setShaderParam(copy, layer);\n"
            "  else SV_setShaderParamVal(copy, 'image', picture);\n"
            "  SV_renderShader(copy, SV_getSequenceRT(), true); }\nfunction draw() {" +
            draw + "}";
        files["copy.frag"] = "uniform sampler2D image;\n"
                             "void main() { gl_FragColor = texture2D(image, gl_TexCoord[0].xy); }";
        Start(std::move(files));
    }
};

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
        SCOPED_TRACE(road);
        StartDraw(road);
        ExpectFramesComeBack(5, 3, 2);
        Engine().release();
    }
}

TEST_F(SurfaceGLTest, ImagesAndLayersComeInTheSameOrder) {
    StartDraw("var t = SV_getTime(), from = t < 2 ? image : layer;\n"
              "show(t % 2 ? SV_surfaceToTexture(SV_textureToSurface(from)) : from);",
              {{"image.ppm", "P6 2 2 255\n\x10\x20\x30\x40\x50\x60\x70\x11\x12\x13\x14\x15"}});
    const std::uint8_t image[] = {255, 0x10, 0x20, 0x30, 255, 0x40, 0x50, 0x60,
                                  255, 0x70, 0x11, 0x12, 255, 0x13, 0x14, 0x15};
    std::uint16_t layer[] = {32768, 1, 2, 3, 16384, 4, 5, 6, 16386, 7, 8, 9, 32767, 10, 11, 12};
    for (const unsigned index : {0u, 1u}) { // there is one parameter
        const ContextKeeper keeper;
        ASSERT_TRUE(Engine().lockFrame());
        Engine().grabIntoTexture(index, layer, 2, 2, 16, 16);
        Engine().releaseFrame();
    }
    for (const double time : {0.0, 1.0})
        Compare(Frame(TestPicture<std::uint8_t>(2, 2), time), 0.0,
                [&](unsigned x, unsigned y, unsigned k) { return image[(y * 2 + x) * 4 + k]; });
    for (const double time : {2.0, 3.0})
        Compare(Frame(TestPicture<std::uint16_t>(2, 2), time), 0.0,
                [&](unsigned x, unsigned y, unsigned k) { return layer[(y * 2 + x) * 4 + k]; });
}

TEST_F(SurfaceGLTest, QuantizingFollowsSelectorAndScriptMode) {
    StartDraw("var t = SV_getTime(), s = SV_textureToSurface(SV_getSequenceTexture());"
              "var done = t < 0 ? SV_surfaceQuantize(s, 0, 14, 2, 0, false)" // no such dithering
              " : t < 1 ? SV_surfaceQuantize(s, 0, 14, 1, 0, false)"         // black cyan magenta grey
              " : t < 2 ? SV_surfaceQuantize(s, 0, 1, 1, 0.5, false)"        // by the red channel
              " : SV_surfaceQuantize(s, 0, 8, 1, 0, false);"                 // no such palette
              "if (done === true) SV_surfaceCopyTo(s, SV_getSequenceRT(), true); SV_release(s);");
    using Bytes = std::vector<std::uint8_t>;
    TestPicture<std::uint8_t> input(2, 2);
    input.channels = {255, 250, 10, 240, 255, 20, 30, 10, 255, 128, 200, 190, 255, 127, 255, 255};
    EXPECT_EQ(Frame(input, -1).channels, input.channels);
    EXPECT_EQ(Frame(input, 0).channels,
              (Bytes{255, 170, 0, 170, 255, 0, 0, 0, 255, 170, 170, 170, 255, 170, 170, 170}));
    EXPECT_EQ(Frame(input, 1).channels,
              (Bytes{255, 255, 255, 255, 255, 0, 0, 0, 255, 255, 255, 255, 255, 0, 0, 0}));
    EXPECT_EQ(Frame(input, 2).channels, input.channels);
}

} // namespace
