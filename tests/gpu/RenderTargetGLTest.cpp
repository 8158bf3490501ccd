#include "gpu/RenderTarget.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include "tests/gpu/GLFixture.h"

namespace {

class RenderTargetGLTest : public GLFixture {
protected:
    static std::array<GLint, 4> Viewport() {
        std::array<GLint, 4> viewport{};
        glGetIntegerv(GL_VIEWPORT, viewport.data());
        return viewport;
    }
};

TEST_F(RenderTargetGLTest, StartsClearedWithFramebufferZeroBound) {
    RenderTarget target;
    ASSERT_TRUE(target.init(5, 3, 8));
    EXPECT_TRUE(target.usable());
    EXPECT_EQ(State(GL_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(ReadFloats(target), std::vector<float>(60, 0.0f));
    ASSERT_TRUE(target.init(7, 2, 32));
    EXPECT_EQ(CountObjects(), 2) << "the first names are gone";
    target.release();
    EXPECT_FALSE(target.usable());
    EXPECT_EQ(CountObjects(), 0);
}

template <class Channel>
std::vector<Channel> CountedChannels(std::size_t count, Channel step) {
    std::vector<Channel> channels(count);
    for (std::size_t i = 0; i < count; ++i)
        channels[i] = static_cast<Channel>(static_cast<Channel>(i) * step);
    return channels;
}

template <class Channel>
void ExpectReadBack(unsigned depth, Channel step) {
    const std::vector<Channel> pixels = CountedChannels<Channel>(7 * 3 * 4, step);
    RenderTarget target;
    target.init(1, 1, depth);
    target.grabPixels(pixels.data(), 7, 3, depth, 7 * 4 * sizeof(Channel), true, false);
    const void* mapped = target.grabBegin();
    ASSERT_NE(mapped, nullptr);
    EXPECT_EQ(std::memcmp(mapped, pixels.data(), pixels.size() * sizeof(Channel)), 0) << "depth " << depth;
    target.grabEnd(const_cast<void*>(mapped));
}

TEST_F(RenderTargetGLTest, ReadsBackTightRowsAtEveryDepth) {
    ExpectReadBack<std::uint8_t>(8, 3);
    ExpectReadBack<std::uint16_t>(15, 777);
    ExpectReadBack<std::uint16_t>(16, 777);
    ExpectReadBack<float>(32, -1.25f);
}

TEST_F(RenderTargetGLTest, ReadBackUsesTheFixedPackBuffer) {
    RenderTarget target;
    target.init(3, 2, 16);
    target.grabBegin();
    EXPECT_EQ(State(GL_PIXEL_PACK_BUFFER_BINDING), 4863);
    GLint size = 0;
    glGetBufferParameteriv(GL_PIXEL_PACK_BUFFER, GL_BUFFER_SIZE, &size);
    EXPECT_EQ(size, 3 * 2 * 8);
    EXPECT_EQ(RenderTarget::m_CurrentFBO, target.framebuffer());
    EXPECT_EQ(Viewport(), (std::array<GLint, 4>{0, 0, 3, 2}));
    target.grabEnd(nullptr);
    EXPECT_EQ(State(GL_PIXEL_PACK_BUFFER_BINDING), 0);
    target.grabBegin();
    target.grabEnd(nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << "a second read-back finds the buffer unmapped";
}

TEST_F(RenderTargetGLTest, SetTakesARectangleOrTheWholeTarget) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    RenderTarget target;
    target.init(9, 7, 8);
    const struct {
        Vector4 rect;
        std::array<GLint, 4> viewport;
    } rows[] = {
        {{1.9f, 2.0f, 3.9f, 4.2f}, {1, 2, 3, 4}},
        {{-2.5f, 0, 5, 5}, {-2, 0, 5, 5}},
        {{1, 1, 0, 4}, {0, 0, 9, 7}},
        {{1, 1, 4, -4}, {0, 0, 9, 7}},
        {{-1, 0, 0, 0}, {0, 0, 9, 7}},
        {{nan, nan, nan, nan}, {0, 0, 9, 7}},
        {{nan, 1, 2, 2}, {0, 1, 2, 2}},
    };
    for (const auto& row : rows) {
        RenderTarget::m_CurrentFBO = 0;
        target.set(&row.rect);
        EXPECT_EQ(Viewport(), row.viewport) << row.rect.x << " " << row.rect.z << " " << row.rect.w;
        EXPECT_EQ(RenderTarget::m_CurrentFBO, target.framebuffer());
    }
    const Vector4 huge{0, 0, 1e30f, 1e30f};
    target.set(&huge);
    EXPECT_GE(Viewport()[2], 9) << "clamped by GL, but never wrapped around";
    target.set(nullptr);
    EXPECT_EQ(Viewport(), (std::array<GLint, 4>{0, 0, 9, 7}));
    EXPECT_EQ(State(GL_FRAMEBUFFER_BINDING), static_cast<GLint>(target.framebuffer()));
}

TEST_F(RenderTargetGLTest, BlitMirrorsAndScales) {
    RenderTarget source, same, half;
    source.init(1, 1, 32);
    same.init(2, 4, 32);
    half.init(1, 2, 32);
    const std::vector<float> pixels = CountedChannels<float>(2 * 4 * 4, 1.0f);
    source.grabPixels(pixels.data(), 2, 4, 32, 32, true, false);

    source.blit(same, false, false);
    EXPECT_EQ(ReadFloats(same), pixels);
    source.blit(same, true, false);
    const std::vector<float> mirrored = ReadFloats(same);
    for (std::size_t y = 0; y < 4; ++y)
        for (std::size_t i = 0; i < 8; ++i)
            EXPECT_EQ(mirrored[y * 8 + i], pixels[(3 - y) * 8 + i]);
    source.blit(half, false, true);
    // The mean of each block of 2 x 2 pixels: rows 0 and 1, columns 0 and 1 hold 0, 4, 8 and 12.
    const std::vector<float> means = ReadFloats(half);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_FLOAT_EQ(means[i], 6.0f + static_cast<float>(i));
        EXPECT_FLOAT_EQ(means[4 + i], 22.0f + static_cast<float>(i));
    }
}

} // namespace
