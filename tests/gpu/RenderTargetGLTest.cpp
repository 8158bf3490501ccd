#include "gpu/RenderTarget.h"

#include <array>
#include <cmath>
#include <cstring>

#include "gpu/GLLimits.h"
#include "gpu/TargetReadback.h"
#include "tests/gpu/GLFixture.h"

namespace {

using Box = std::array<GLint, 4>;

Box Viewport() {
    Box viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    return viewport;
}

bool IsPackBufferMapped() {
    GLint isMapped = GL_TRUE;
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 4863);
    glGetBufferParameteriv(GL_PIXEL_PACK_BUFFER, GL_BUFFER_MAPPED, &isMapped);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    return isMapped == GL_TRUE;
}

class RenderTargetGLTest : public GLFixture {};

TEST_F(RenderTargetGLTest, ANewTargetIsClearedAndFramebufferZeroIsBound) {
    glClearColor(1, 1, 1, 1);
    RenderTarget target;
    ASSERT_TRUE(target.init(5, 3, 8));
    EXPECT_EQ(State(GL_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(Stored(target), std::vector<float>(60, 0.0f));
    ASSERT_TRUE(target.init(7, 2, 32));
    EXPECT_EQ(CountObjects(), 2) << "the first names are gone";
    target.release();
    EXPECT_FALSE(target.usable());
    EXPECT_EQ(CountObjects(), 0);
}

TEST_F(RenderTargetGLTest, GrabBeginMapsRowsWithoutPaddingInTheFixedPackBuffer) {
    for (const auto& [depth, channelBytes] : {std::pair{8u, 1u}, {15u, 2u}, {16u, 2u}, {32u, 4u}}) {
        const std::size_t rowBytes = 7 * 4 * channelBytes, stride = 9 * 4 * channelBytes;
        const std::vector<unsigned char> pixels = CountedBytes(3 * stride);
        RenderTarget target;
        target.init(1, 1, depth);
        target.grabPixels(pixels.data(), 7, 3, depth, static_cast<std::ptrdiff_t>(stride), true, false);
        const auto* const mapped = static_cast<const unsigned char*>(target.grabBegin());
        ASSERT_NE(mapped, nullptr) << depth;
        for (std::size_t y = 0; y < 3; ++y)
            EXPECT_EQ(std::memcmp(mapped + y * rowBytes, &pixels[y * stride], rowBytes), 0) << depth;
        EXPECT_EQ(State(GL_PIXEL_PACK_BUFFER_BINDING), 4863);
        EXPECT_EQ(Viewport(), (Box{0, 0, 7, 3}));
        target.grabEnd(nullptr);
        EXPECT_EQ(State(GL_PIXEL_PACK_BUFFER_BINDING), 0);
        EXPECT_FALSE(IsPackBufferMapped());
    }
}

TEST_F(RenderTargetGLTest, DepthsThatDoNotExistAreReadBackAs8Bits) {
    const std::vector<unsigned char> pixels = CountedBytes(3 * 2 * 4);
    for (const int depth : {0, 1, 4, 7, 9, 10, 12, 24, 33, 64, -8, -32}) {
        RenderTarget target;
        ASSERT_TRUE(target.init(3, 2, static_cast<unsigned>(depth))) << depth;
        target.grabPixels(pixels.data(), 3, 2, static_cast<unsigned>(depth), 12, true, false);
        const TargetReadback readback(target);
        ASSERT_NE(readback.pixels(), nullptr) << depth;
        GLint bytes = 0;
        glGetBufferParameteriv(GL_PIXEL_PACK_BUFFER, GL_BUFFER_SIZE, &bytes);
        EXPECT_EQ(bytes, 3 * 2 * 4) << depth;
        EXPECT_EQ(std::memcmp(readback.pixels(), pixels.data(), pixels.size()), 0) << depth;
    }
}

TEST_F(RenderTargetGLTest, SizesThatOpenGLCannotStoreGiveNoGLObjects) {
    const unsigned limit = GLLimits::MaxTextureSize();
    const struct {
        const char* name;
        unsigned width, height;
    } rows[] = {{"no width", 0, 4},
                {"no height", 4, 0},
                {"negative", static_cast<unsigned>(-4), 4},
                {"too wide", limit + 1, 1},
                {"too high", 1, limit + 1}};
    for (const auto& row : rows) {
        RenderTarget target;
        EXPECT_FALSE(target.init(row.width, row.height, 8)) << row.name;
        EXPECT_FALSE(target.usable()) << row.name;
        EXPECT_NE(target.errorText().find(std::to_string(limit)), std::string::npos) << target.errorText();
        EXPECT_EQ(CountObjects(), 0) << row.name;

        ASSERT_TRUE(target.init(2, 2, 8));
        target.grabPixels(nullptr, row.width, row.height, 8, 8, true, false);
        EXPECT_FALSE(target.usable()) << row.name;
        EXPECT_EQ(target.grabBegin(), nullptr) << row.name;
        EXPECT_EQ(State(GL_PIXEL_PACK_BUFFER_BINDING), 0) << row.name;
        target.grabPixels(nullptr, 3, 3, 8, 12, true, false);
        EXPECT_TRUE(target.usable()) << "a possible size makes it usable again: " << row.name;
        EXPECT_EQ(target.errorText(), "") << row.name;
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << row.name;
    }
}

// Its size in bits is just above 2 to the power of 32.
TEST_F(RenderTargetGLTest, MoreThan512MebibytesAreReadBackWhole) {
    RenderTarget target;
    if (!target.init(8192, 4097, 32))
        GTEST_SKIP() << target.errorText();
    target.set(nullptr);
    glClearColor(0.25f, 0.5f, 0.75f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    const TargetReadback readback(target);
    ASSERT_NE(readback.pixels(), nullptr);
    const auto* const lastPixel = static_cast<const float*>(readback.pixels()) + (8192u * 4097u - 1) * 4;
    EXPECT_EQ(std::vector<float>(lastPixel, lastPixel + 4), (std::vector<float>{0.25f, 0.5f, 0.75f, 1.0f}));
}

TEST_F(RenderTargetGLTest, AnExceptionDuringAReadBackLeavesNoPackBuffer) {
    RenderTarget target;
    target.init(2, 2, 8);
    try {
        const TargetReadback readback(target);
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(State(GL_PIXEL_PACK_BUFFER_BINDING), 0);
    EXPECT_FALSE(IsPackBufferMapped());
}

TEST_F(RenderTargetGLTest, FreedStorageIsMadeAnewByInit) {
    RenderTarget target;
    target.init(2, 2, 8);
    const std::vector<unsigned char> pixels = CountedBytes(16);
    target.grabPixels(pixels.data(), 2, 2, 8, 8, true, false);
    target.freeStorage();
    EXPECT_EQ(CountObjects(), 0);
    EXPECT_EQ(target.pixelCopy().capacity(), 0u);
    EXPECT_FALSE(target.usable());
    ASSERT_TRUE(target.init(3, 1, 8));
    EXPECT_EQ(Stored(target), std::vector<float>(12, 0.0f));
}

TEST_F(RenderTargetGLTest, SetUsesARectangleWithAnAreaOrTheWholeTarget) {
    constexpr float nan = NAN;
    constexpr Box whole{0, 0, 9, 7};
    RenderTarget target;
    target.init(9, 7, 8);
    const struct {
        const char* name;
        Vector4 rect;
        Box viewport;
    } rows[] = {
        {"fractions are truncated", {1.9f, 2.0f, 3.9f, 4.2f}, {1, 2, 3, 4}},
        {"negative origin", {-2.5f, 0, 5, 5}, {-2, 0, 5, 5}},
        {"no width", {1, 1, 0, 4}, whole},
        {"no height", {1, 1, 4, 0}, whole},
        {"negative height", {1, 1, 4, -4}, whole},
        {"the default of scripts", {-1, 0, 0, 0}, whole},
        {"NaN", {nan, nan, nan, nan}, whole},
        {"NaN as origin", {nan, 1, 2, 2}, {0, 1, 2, 2}},
    };
    for (const auto& row : rows) {
        RenderTarget::m_CurrentFBO = 0;
        glViewport(3, 3, 3, 3);
        target.set(&row.rect);
        EXPECT_EQ(Viewport(), row.viewport) << row.name;
        EXPECT_EQ(RenderTarget::m_CurrentFBO, target.framebuffer());
        EXPECT_EQ(State(GL_FRAMEBUFFER_BINDING), static_cast<GLint>(target.framebuffer()));
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }
    const Vector4 huge{0, 0, 1e30f, 1e30f};
    target.set(&huge);
    EXPECT_GE(Viewport()[2], 9) << "clamped by GL, but never wrapped around";
    target.set(nullptr);
    EXPECT_EQ(Viewport(), whole);
}

TEST_F(RenderTargetGLTest, BlitCopiesMirroredOrScaled) {
    RenderTarget source, same, half;
    source.init(1, 1, 32);
    same.init(2, 4, 32);
    half.init(1, 2, 32);
    std::vector<float> pixels(2 * 4 * 4);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<float>(i);
    source.grabPixels(pixels.data(), 2, 4, 32, 32, true, false);

    source.blit(same, false, false);
    EXPECT_EQ(Stored(same), pixels);
    source.blit(same, true, false);
    const std::vector<float> mirrored = Stored(same);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        EXPECT_EQ(mirrored[i], pixels[(3 - i / 8) * 8 + i % 8]) << i;
    source.blit(half, false, true);
    // The mean of each block of 2 x 2 pixels: rows 0 and 1, columns 0 and 1 hold 0, 4, 8 and 12.
    const std::vector<float> means = Stored(half);
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_FLOAT_EQ(means[i], static_cast<float>(i < 4 ? 6 + i : 18 + i)) << i;
}

} // namespace
