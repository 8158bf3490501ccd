#include "gpu/Texture.h"

#include <cstring>
#include <numeric>

#include "gpu/Surface.h"
#include "tests/gpu/GLFixture.h"

namespace {

class TextureGLTest : public GLFixture {
protected:
    // What GL stores, bottom row first, before any swizzle.
    static std::vector<float> Stored(const Texture& texture) {
        std::vector<float> pixels(std::size_t(texture.width()) * texture.height() * 4);
        glBindTexture(GL_TEXTURE_2D, texture.id());
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, pixels.data());
        return pixels;
    }

    static GLint Parameter(const Texture& texture, GLenum name) {
        GLint value = 0;
        glBindTexture(GL_TEXTURE_2D, texture.id());
        glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
        return value;
    }

    static std::vector<GLint> Swizzle(const Texture& texture) {
        std::vector<GLint> order(4);
        glBindTexture(GL_TEXTURE_2D, texture.id());
        glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_SWIZZLE_RGBA, order.data());
        return order;
    }
};

// Rows of 3 pixels, padded by one, counted through; the padding holds the highest value.
template <class Channel>
std::vector<Channel> PaddedRows(Channel step, Channel padding) {
    std::vector<Channel> rows(5 * 16, padding);
    for (int y = 0; y < 5; ++y)
        for (int i = 0; i < 12; ++i)
            rows[std::size_t(y) * 16 + std::size_t(i)] =
                static_cast<Channel>(static_cast<Channel>(y * 12 + i) * step);
    return rows;
}

template <class Channel>
void ExpectUpload(Texture& texture, unsigned depth, Channel step, Channel padding, float scale) {
    const std::vector<Channel> rows = PaddedRows(step, padding);
    const long stride = 16 * sizeof(Channel);
    texture.grabPixels(rows.data(), 3, 5, depth, stride, true, false);
    std::vector<float> stored(60);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, stored.data());
    for (int i = 0; i < 60; ++i)
        EXPECT_NEAR(stored[std::size_t(i)], static_cast<float>(i) * static_cast<float>(step) / scale, 1e-6)
            << "depth " << depth << " channel " << i;
    EXPECT_EQ(texture.stride(), stride);
    ASSERT_EQ(texture.pixelCopy().size(), rows.size() * sizeof(Channel));
    for (std::size_t y = 0; y < 5; ++y) // the padding is nobody's business
        EXPECT_EQ(std::memcmp(texture.pixelCopy().data() + y * 16 * sizeof(Channel), &rows[y * 16],
                              12 * sizeof(Channel)),
                  0)
            << "depth " << depth << " row " << y;
}

template <class AnyTexture>
void ExpectUploadsAtEveryDepth() {
    // The first copy of a texture comes from GL, the later ones from the uploads.
    AnyTexture textures[3];
    for (Texture& texture : textures)
        texture.init(1, 1, 8, true);
    for (int round = 0; round < 2; ++round) {
        ExpectUpload<std::uint8_t>(textures[0], 8, 3, 255, 255.0f);
        ExpectUpload<std::uint16_t>(textures[1], round ? 15 : 16, 1001, 65535, 65535.0f);
        ExpectUpload<float>(textures[2], 32, -0.75f, 9.0f, 1.0f);
    }
}

TEST_F(TextureGLTest, UploadsPaddedRowsAtEveryDepth) {
    ExpectUploadsAtEveryDepth<Texture>();
    ExpectUploadsAtEveryDepth<RenderTarget>();
}

TEST_F(TextureGLTest, TheCopyIsWhatWasUploadedLast) {
    const unsigned char pixels[] = {1, 2, 3, 4};
    Texture released;
    released.init(1, 1, 8, true);
    released.grabPixels(pixels, 1, 1, 8, 4, false, false);
    released.release();
    EXPECT_EQ(released.pixelCopy(), std::vector<unsigned char>(pixels, pixels + 4));

    RenderTarget drawn;
    drawn.init(1, 1, 8);
    drawn.grabPixels(pixels, 1, 1, 8, 4, true, false);
    drawn.set(nullptr);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(drawn.pixelCopy(), std::vector<unsigned char>(pixels, pixels + 4))
        << "not what was drawn since";

    const std::uint32_t strangeFloats[] = {0x7fa00001u, 0x00000001u, 0x80000000u, 0xff800000u};
    Texture strange;
    strange.init(1, 1, 32, true);
    strange.grabPixels(strangeFloats, 1, 1, 32, 16, true, false);
    ASSERT_EQ(strange.pixelCopy().size(), 16u);
    EXPECT_EQ(std::memcmp(strange.pixelCopy().data(), strangeFloats, 16), 0) << "bit for bit";

    // Asking leaves the state of an unfinished read-back alone.
    Texture asked;
    asked.init(1, 1, 8, true);
    asked.grabPixels(pixels, 1, 1, 8, 4, true, false);
    drawn.grabBegin();
    glBindTexture(GL_TEXTURE_2D, drawn.id());
    glPixelStorei(GL_PACK_ROW_LENGTH, 9);
    EXPECT_EQ(asked.pixelCopy(), std::vector<unsigned char>(pixels, pixels + 4));
    EXPECT_EQ(State(GL_PIXEL_PACK_BUFFER_BINDING), 4863);
    EXPECT_EQ(State(GL_TEXTURE_BINDING_2D), static_cast<GLint>(drawn.id()));
    EXPECT_EQ(State(GL_PACK_ROW_LENGTH), 9);
    drawn.grabEnd(nullptr);
}

TEST_F(TextureGLTest, EmptyUploadsKeepTheCopyAndResetTheSampling) {
    Texture texture;
    texture.init(2, 2, 16, true);
    EXPECT_EQ(texture.stride(), 0);
    EXPECT_TRUE(texture.pixelCopy().empty());
    const std::vector<unsigned char> pixels(16, 77);
    texture.grabPixels(pixels.data(), 2, 2, 8, 8, true, false);
    texture.setParameter(GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    texture.setParameter(GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    EXPECT_EQ(Parameter(texture, GL_TEXTURE_MAG_FILTER), GL_NEAREST);

    texture.grabPixels(nullptr, 7, 5, 32, 0, false, true);
    EXPECT_EQ(texture.pixelCopy(), pixels);
    EXPECT_EQ(texture.width(), 7u);
    EXPECT_EQ(texture.height(), 5u);
    EXPECT_EQ(texture.depth(), 32u);
    EXPECT_EQ(Parameter(texture, GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    EXPECT_EQ(Parameter(texture, GL_TEXTURE_WRAP_T), GL_REPEAT);
}

TEST_F(TextureGLTest, ChannelOrderIsASwizzle) {
    Texture texture;
    texture.init(1, 1, 8, true);
    EXPECT_EQ(Swizzle(texture), (std::vector<GLint>{GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}));
    const unsigned char pixel[] = {1, 2, 3, 4};
    texture.grabPixels(pixel, 1, 1, 8, 4, false, false);
    EXPECT_EQ(Swizzle(texture), (std::vector<GLint>{GL_ALPHA, GL_RED, GL_GREEN, GL_BLUE}));
}

TEST_F(TextureGLTest, Expands16BitsOnlyAtDepth16AndOnRequest) {
    // Two rows of one pixel; the third pair of values is padding.
    const std::uint16_t rows[] = {0, 1, 16384, 16385, 5, 5, 32768, 32767, 2, 16383, 5, 5};
    const std::uint16_t expanded[] = {0, 2, 32768, 32768, 65534, 65532, 4, 32766};
    Texture texture;
    texture.init(1, 2, 16, true);
    texture.grabPixels(rows, 1, 2, 16, 12, true, true);
    const auto* copy = reinterpret_cast<const std::uint16_t*>(texture.pixelCopy().data());
    // The rows are one pixel and a half apart, which GL cannot express: they are packed first.
    ASSERT_EQ(texture.pixelCopy().size(), 16u);
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_EQ(copy[i], expanded[i]) << rows[i / 4 * 6 + i % 4];
    const std::vector<float> stored = Stored(texture);
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_FLOAT_EQ(stored[i], static_cast<float>(expanded[i]) / 65535.0f);

    for (const unsigned depth : {15u, 16u}) {
        texture.grabPixels(rows, 1, 2, depth, 12, true, depth == 15);
        EXPECT_FLOAT_EQ(Stored(texture)[1], 1.0f / 65535.0f) << depth;
    }
}

TEST_F(TextureGLTest, LongRowsExpandRight) {
    std::vector<std::uint16_t> row(32772);
    std::iota(row.begin(), row.end(), std::uint16_t(0));
    Texture texture;
    texture.init(1, 1, 16, true);
    texture.grabPixels(row.data(), 8193, 1, 16, 8193 * 8, true, true);
    const auto* copy = reinterpret_cast<const std::uint16_t*>(texture.pixelCopy().data());
    for (unsigned v = 0; v <= 32768; ++v)
        ASSERT_EQ(copy[v], v <= 16384 ? 2 * v : 2 * (v - 1));
}

TEST_F(TextureGLTest, SurfacesArriveUprightOrFlipped) {
    const std::vector<unsigned char> rows = {0, 51, 102, 153, 204, 255, 0, 51, 102, 153, 204, 255};
    Surface surface;
    surface.grabPixels(rows.data(), 1, 3, 8, 4, false, true);
    Texture texture;
    texture.init(2, 2, 8, true);
    for (const bool flip : {false, true}) {
        texture.grabSurface(surface, flip);
        EXPECT_EQ(texture.height(), 3u);
        const std::vector<float> stored = Stored(texture);
        for (std::size_t y = 0; y < 3; ++y)
            EXPECT_NEAR(stored[y * 4 + 1], static_cast<float>(rows[(flip ? 2 - y : y) * 4 + 1]) / 255.0f,
                        1e-6);
    }
    Surface empty;
    empty.init(3, 3, 8, true);
    texture.grabSurface(empty, true);
    EXPECT_EQ(texture.width(), 3u) << "a surface without pixels only sets the size";
}

TEST_F(TextureGLTest, OwnsOneName) {
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

} // namespace
