#include <map>
#include <string>

#include "engine/utils/Utils.h"
#include "gpu/Texture.h"
#include "tests/gpu/GLFixture.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes Join(const std::string& text, const Bytes& bytes) {
    Bytes file(text.begin(), text.end());
    file.insert(file.end(), bytes.begin(), bytes.end());
    return file;
}

const std::map<std::wstring, Bytes> s_Files = {
    // Two pixels beside each other: (255, 51, 0) and (0, 102, 204).
    {L"two.ppm", Join("P6 2 1 255\n", {255, 51, 0, 0, 102, 204})},
    // Shared exponent 129: mantissa / 128; the second pixel's exponent 131 gives mantissa / 32.
    {L"two.hdr",
     Join("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 2\n", {128, 64, 32, 129, 255, 0, 1, 131})},
    {L"broken.png", Join("\x89PNG\r\n\x1a\n", {0, 0, 0, 13})},
    {L"cut.hdr", Join("#?RADIANCE\n", {})},
    {L"\u00fc.ppm", Join("P6 1 1 255\n", {1, 2, 3})},
};

class TextureLoadGLTest : public GLFixture {
protected:
    void SetUp() override {
        GLFixture::SetUp();
        Utils::ReadWholeFileCallback = [](const std::wstring& name) {
            const auto found = s_Files.find(name);
            return found != s_Files.end() ? found->second : Bytes();
        };
    }
    void TearDown() override {
        Utils::ReadWholeFileCallback = nullptr;
        GLFixture::TearDown();
    }

    static std::vector<float> Stored(const Texture& texture) {
        std::vector<float> pixels(std::size_t(texture.width()) * texture.height() * 4);
        glBindTexture(GL_TEXTURE_2D, texture.id());
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, pixels.data());
        return pixels;
    }
};

TEST_F(TextureLoadGLTest, PicturesGetFourChannelsAtTheirDepth) {
    Texture texture;
    ASSERT_TRUE(texture.load("two.ppm"));
    EXPECT_EQ(texture.fileName(), "two.ppm");
    EXPECT_EQ(texture.depth(), 8u);
    EXPECT_EQ(texture.stride(), 8);
    EXPECT_FALSE(texture.argbOrder());
    EXPECT_EQ(texture.pixelCopy(), (Bytes{255, 51, 0, 255, 0, 102, 204, 255}));
    const std::vector<float> plain = Stored(texture);
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_NEAR(plain[i], static_cast<float>(texture.pixelCopy()[i]) / 255.0f, 1e-6);

    ASSERT_TRUE(texture.load("two.hdr"));
    EXPECT_EQ(texture.depth(), 32u);
    EXPECT_EQ(texture.stride(), 32);
    EXPECT_EQ(Stored(texture),
              (std::vector<float>{1.0f, 0.5f, 0.25f, 1.0f, 255 / 32.0f, 0.0f, 1 / 32.0f, 1.0f}));
    EXPECT_EQ(CountObjects(), 1);
    EXPECT_TRUE(texture.load("\xc3\xbc.ppm")) << "names are UTF-8";
}

TEST_F(TextureLoadGLTest, FailuresLeaveNothingBehind) {
    for (const char* name : {"missing.png", "broken.png", "cut.hdr", ""}) {
        Texture texture;
        EXPECT_FALSE(texture.load(name)) << name;
        EXPECT_EQ(texture.id(), 0u);
    }
    EXPECT_EQ(CountObjects(), 0);
}

} // namespace
