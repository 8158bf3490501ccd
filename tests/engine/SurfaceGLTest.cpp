#include "tests/engine/PictureTester.h"

namespace {

// Copies of pixels between textures, CPU surfaces and render targets.
class SurfaceGLTest : public PictureTester {
protected:
    // Starts an effect whose draw() has this body, and whose show(picture) draws a picture upright.
    void StartDraw(const std::string& draw, std::map<std::string, std::string> files = {}) {
        files["fx.js"] = R"js(
            var copy, layer, image;
            function setup() {
                copy = SV_initShader("copy");
                layer = SV_initParam("image", SV_Type.LAYER);
                image = SV_initTexture("/image.ppm");
            }
            function show(picture) {
                if (picture === layer) SV_setShaderParam(copy, layer);
                else SV_setShaderParamVal(copy, "image", picture);
                SV_renderShader(copy, SV_getSequenceRT(), true);
            }
            function draw() {)js" +
                         draw + "}";
        files["copy.frag"] = R"glsl(
            uniform sampler2D image;
            void main() { gl_FragColor = texture2D(image, gl_TexCoord[0].xy); })glsl";
        Start(std::move(files));
    }
};

TEST_F(SurfaceGLTest, CopiesThroughTheCpuKeepPixelsAndOrientation) {
    const struct {
        const char *name, *draw;
    } rows[] = {
        {"from the input texture over a surface to the target, whose rows are bottom-up", R"js(
            var s = SV_textureToSurface(SV_getSequenceTexture());
            SV_surfaceCopyTo(s, SV_getSequenceRT(), true);
            SV_release(s);)js"},
        {"from the target over a surface to a texture", R"js(
            show(SV_getSequenceTexture());
            var s = SV_textureToSurface(SV_getSequenceRT()), t = SV_surfaceToTexture(s);
            SV_renderShader(copy, SV_getSequenceRT(), true);
            SV_setShaderParamVal(copy, "image", t);
            SV_renderShader(copy, SV_getSequenceRT(), false);
            SV_release(s);
            SV_release(t);)js"},
        {"from a texture that is released before its surface is used", R"js(
            var t = SV_surfaceToTexture(SV_textureToSurface(SV_getSequenceTexture()));
            var s = SV_textureToSurface(t);
            SV_release(t);
            var u = SV_surfaceToTexture(s);
            SV_release(s);
            show(u);)js"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        StartDraw(row.draw);
        ExpectFramesComeBack(5, 3, 2);
        Engine().release();
    }
}

TEST_F(SurfaceGLTest, ImageFilesAndLayersHaveTheSameChannelOrder) {
    StartDraw(R"js(
        var t = SV_getTime(), from = t < 2 ? image : layer;
        show(t % 2 ? SV_surfaceToTexture(SV_textureToSurface(from)) : from);)js",
              {{"image.ppm", "P6 2 2 255\n\x10\x20\x30\x40\x50\x60\x70\x11\x12\x13\x14\x15"}});
    const std::uint8_t image[] = {255, 0x10, 0x20, 0x30, 255, 0x40, 0x50, 0x60,
                                  255, 0x70, 0x11, 0x12, 255, 0x13, 0x14, 0x15};
    std::uint16_t layer[] = {32768, 1, 2, 3, 16384, 4, 5, 6, 16386, 7, 8, 9, 32767, 10, 11, 12};
    for (const unsigned index : {0u, 1u}) { // there is only one parameter
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

TEST_F(SurfaceGLTest, QuantizingUsesTheSelectedPaletteAndMode) {
    StartDraw(R"js(
        // by the time: an unknown mode, black cyan magenta grey, black and white by red, an unknown palette
        var rows = [[14, 2, 0], [14, 1, 0], [1, 1, 0.5], [8, 1, 0]], row = rows[SV_getTime() + 1];
        var s = SV_textureToSurface(SV_getSequenceTexture());
        if (SV_surfaceQuantize(s, 0, row[0], row[1], row[2], false) === true)
            SV_surfaceCopyTo(s, SV_getSequenceRT(), true);
        SV_release(s);)js");
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
