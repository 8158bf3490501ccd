#include "gpu/Texture.h"

#include <cstring>
#include <numeric>

#include "gpu/GLLimits.h"
#include "tests/gpu/GLFixture.h"

namespace {

using Bytes = std::vector<unsigned char>;

class TextureGLTest : public GLFixture {};

// Rows of 3 pixels and padding of 1 pixel, whose value is undefined in the copy.
TEST_F(TextureGLTest, PaddedRowsUploadUnchangedAtEveryDepth) {
    for (const auto& [depth, channelBytes] : {std::pair{8u, 1u}, {15u, 2u}, {16u, 2u}, {32u, 4u}}) {
        const std::size_t stride = 16 * channelBytes;
        Texture texture;
        texture.init(1, 1, depth, true);
        // The first copy comes back from GL, the later ones are taken from the uploads.
        for (const unsigned first : {1u, 50u}) {
            const Bytes rows = CountedBytes(5 * stride, first);
            texture.grabPixels(rows.data(), 3, 5, depth, static_cast<std::ptrdiff_t>(stride), true, false);
            const Bytes& copy = texture.pixelCopy();
            ASSERT_EQ(copy.size(), rows.size());
            for (std::size_t row = 0; row < rows.size(); row += stride)
                EXPECT_EQ(std::memcmp(&copy[row], &rows[row], 12 * channelBytes), 0)
                    << "depth " << depth << " row " << row / stride;
        }
    }
}

TEST_F(TextureGLTest, RowsOfAnyStrideUpload) {
    const Bytes rows = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    Texture texture;
    texture.init(1, 1, 8, true);
    texture.grabPixels(rows.data(), 1, 2, 8, 6, true, false);
    EXPECT_EQ(texture.pixelCopy(), (Bytes{1, 2, 3, 4, 7, 8, 9, 10})) << "GL knows whole pixels only";
    texture.grabPixels(&rows[4], 1, 2, 8, -4, true, false);
    EXPECT_EQ(texture.pixelCopy(), (Bytes{5, 6, 7, 8, 1, 2, 3, 4}));
}

TEST_F(TextureGLTest, ThePixelCopyIsTheLastUpload) {
    const Bytes pixel = {1, 2, 3, 4};
    const auto upload = [&](Texture& texture) {
        texture.init(1, 1, 8, true);
        texture.grabPixels(pixel.data(), 1, 1, 8, 4, true, false);
    };
    Texture released, asked;
    upload(released);
    released.release();
    EXPECT_EQ(released.pixelCopy(), pixel);

    RenderTarget drawn;
    drawn.init(1, 1, 8);
    drawn.grabPixels(pixel.data(), 1, 1, 8, 4, true, false);
    drawn.set(nullptr);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(drawn.pixelCopy(), pixel) << "not what was drawn since";

    upload(asked);
    drawn.grabBegin();
    glBindTexture(GL_TEXTURE_2D, drawn.id());
    glPixelStorei(GL_PACK_ROW_LENGTH, 9);
    EXPECT_EQ(asked.pixelCopy(), pixel);
    EXPECT_EQ(State(GL_PIXEL_PACK_BUFFER_BINDING), 4863) << "an unfinished read-back is left alone";
    EXPECT_EQ(State(GL_TEXTURE_BINDING_2D), static_cast<GLint>(drawn.id()));
    EXPECT_EQ(State(GL_PACK_ROW_LENGTH), 9);
    drawn.grabEnd(nullptr);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);

    // A signalling NaN, a denormal number, minus zero and minus infinity come back bit for bit.
    const std::uint32_t floats[] = {0x7fa00001u, 0x00000001u, 0x80000000u, 0xff800000u};
    asked.grabPixels(floats, 1, 1, 32, 16, true, false);
    ASSERT_EQ(asked.pixelCopy().size(), sizeof floats);
    EXPECT_EQ(std::memcmp(asked.pixelCopy().data(), floats, sizeof floats), 0);
}

TEST_F(TextureGLTest, UploadsWithoutPixelsKeepThePixelCopyAndResetTheSampling) {
    Texture texture;
    const auto state = [&](GLenum name) {
        GLint value = 0;
        glBindTexture(GL_TEXTURE_2D, texture.id());
        glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
        return value;
    };
    texture.init(2, 2, 16, true);
    EXPECT_TRUE(texture.pixelCopy().empty());
    const Bytes pixels = CountedBytes(16);
    texture.grabPixels(pixels.data(), 2, 2, 8, 8, true, false);
    texture.setParameter(GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    texture.setParameter(GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    EXPECT_EQ(state(GL_TEXTURE_MAG_FILTER), GL_NEAREST);

    texture.grabPixels(nullptr, 7, 5, 32, 0, false, true);
    EXPECT_EQ(texture.pixelCopy(), pixels);
    EXPECT_EQ(Stored(texture).size(), 7u * 5 * 4);
    EXPECT_EQ(state(GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    EXPECT_EQ(state(GL_TEXTURE_WRAP_T), GL_REPEAT);
}

TEST_F(TextureGLTest, SixteenBitsAreExpandedAtDepth16AndOnRequestOnly) {
    std::vector<std::uint16_t> row(32772); // every value that hosts send, and three more
    std::iota(row.begin(), row.end(), std::uint16_t(0));
    Texture texture;
    texture.init(1, 1, 16, true);
    texture.grabPixels(row.data(), 8193, 1, 16, 8193 * 8, true, true);
    const auto* const copy = reinterpret_cast<const std::uint16_t*>(texture.pixelCopy().data());
    for (unsigned v = 0; v <= 32768; ++v)
        ASSERT_EQ(copy[v], v <= 16384 ? 2 * v : 2 * (v - 1));
    EXPECT_FLOAT_EQ(Stored(texture)[32768], 65534.0f / 65535.0f);
    for (const unsigned depth : {15u, 16u}) {
        texture.grabPixels(row.data(), 8193, 1, depth, 8193 * 8, true, depth == 15);
        EXPECT_FLOAT_EQ(Stored(texture)[32768], 32768.0f / 65535.0f) << depth;
    }
}

TEST_F(TextureGLTest, ATextureHasOneGLNameAtATime) {
    {
        Texture texture;
        texture.init(4, 4, 8, true);
        texture.init(8, 8, 16, true);
        EXPECT_EQ(CountObjects(), 1);
        for (const unsigned depth : {0u, 1u, 7u, 24u})
            texture.init(4, 4, depth, true); // depths that no script should give
    }
    EXPECT_EQ(CountObjects(), 0);
}

Bytes Join(const std::string& text, const Bytes& bytes) {
    Bytes file(text.begin(), text.end());
    file.insert(file.end(), bytes.begin(), bytes.end());
    return file;
}

const std::map<std::wstring, Bytes> s_Files = {
    {L"two.ppm", Join("P6 2 1 255\n", {255, 51, 0, 0, 102, 204})},
    // Shared exponent 129: mantissa / 128; the second pixel's exponent 131 gives mantissa / 32.
    {L"two.hdr",
     Join("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 2\n", {128, 64, 32, 129, 255, 0, 1, 131})},
    {L"broken.png", Join("\x89PNG\r\n\x1a\n", {0, 0, 0, 13})},
    {L"cut.hdr", Join("#?RADIANCE\n", {})},
    {L"\u00fc.ppm", Join("P6 1 1 255\n", {1, 2, 3})},
};

TEST_F(TextureGLTest, ImageFilesLoadAsFourChannelsOrGiveAnErrorText) {
    Utils::ReadWholeFileCallback = [](const std::wstring& name) {
        const auto found = s_Files.find(name);
        return found != s_Files.end() ? found->second : Bytes();
    };
    Texture texture;
    for (const char* const name : {"missing.png", "broken.png", "cut.hdr", ""}) {
        EXPECT_FALSE(texture.load(name)) << name;
        EXPECT_NE(texture.errorText(), "") << name;
    }
    EXPECT_EQ(CountObjects(), 0);

    ASSERT_TRUE(texture.load("two.ppm"));
    EXPECT_EQ(texture.fileName(), "two.ppm");
    EXPECT_EQ(texture.depth(), 8u);
    EXPECT_FALSE(texture.argbOrder());
    EXPECT_EQ(texture.pixelCopy(), (Bytes{255, 51, 0, 255, 0, 102, 204, 255}));
    ASSERT_TRUE(texture.load("two.hdr"));
    EXPECT_EQ(texture.depth(), 32u);
    const std::vector<float> rgba = {1, 0.5f, 0.25f, 1, 255 / 32.0f, 0, 1 / 32.0f, 1};
    const std::vector<float> argb = {1, 1, 0.5f, 0.25f, 1, 255 / 32.0f, 0, 1 / 32.0f};
    EXPECT_EQ(Stored(texture), GLLimits::HasTextureSwizzle() ? rgba : argb);
    EXPECT_EQ(CountObjects(), 1);
    EXPECT_TRUE(texture.load("\xc3\xbc.ppm")) << "names are UTF-8";
}

} // namespace
