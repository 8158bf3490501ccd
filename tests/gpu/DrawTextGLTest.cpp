#include "gpu/DrawText.h"

#include <set>

#include "gpu/BitmapFont.h"
#include "tests/gpu/GLFixture.h"

namespace {

constexpr unsigned s_Width = 48, s_Height = 64;

class DrawTextGLTest : public GLFixture {
protected:
    void SetUp() override {
        GLFixture::SetUp();
        if (IsSkipped())
            return;
        m_Target.init(s_Width, s_Height, 8);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0, s_Width, 0, s_Height, -1, 1);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glColor4f(1, 1, 1, 1);
    }
    void TearDown() override {
        m_Target.release();
        GLFixture::TearDown();
    }

    // Draws and returns the pixels that are set, as (x, y) from the lower left corner.
    std::set<std::pair<int, int>> Ink(int x, int y, int lineCount, const std::string& text) {
        m_Target.set(nullptr);
        glClear(GL_COLOR_BUFFER_BIT);
        Utils::DrawText(x, y, lineCount, text);
        const std::vector<float> pixels = ReadFloats(m_Target);
        std::set<std::pair<int, int>> ink;
        for (int i = 0; i < int(s_Width * s_Height); ++i)
            if (pixels[std::size_t(i) * 4] > 0.5f)
                ink.emplace(i % int(s_Width), i / int(s_Width));
        return ink;
    }

    RenderTarget m_Target;
};

// A bar of 9 pixels from the base line up, as the letter l is drawn, one pixel right of the raster position.
void AddBar(std::set<std::pair<int, int>>& ink, int rasterX, int baseLine) {
    for (int i = 0; i < 9; ++i)
        ink.emplace(rasterX + 1, baseLine + i);
}

TEST_F(DrawTextGLTest, LinesGoDownBySixteenToTheLastAtFour) {
    constexpr int x = 5, y = 3;
    std::set<std::pair<int, int>> three, two, one;
    AddBar(three, x + 1, y + 36);
    AddBar(three, x + 1, y + 20);
    AddBar(three, x + 1, y + 4);
    AddBar(two, x + 1, y + 36);
    AddBar(two, x + 1, y + 20);
    AddBar(one, x + 1, y + 20);
    EXPECT_EQ(Ink(x, y, 3, "l\nl\nl\n"), three);
    EXPECT_EQ(Ink(x, y, 3, "l\nl\nl\nl\nl\n"), three) << "no more than the lines counted";
    EXPECT_EQ(Ink(x, y, 3, "l\n\n\nl\n"), two) << "blank lines collapse";
    EXPECT_EQ(Ink(x, y, 2, "l\nl"), one) << "a last line without a line feed is not drawn";
    EXPECT_EQ(Ink(x, y, 2, ""), (std::set<std::pair<int, int>>{}));
}

TEST_F(DrawTextGLTest, OneLineTakesAllOfTheText) {
    std::set<std::pair<int, int>> expected;
    AddBar(expected, 1, 4);
    AddBar(expected, 1 + 3, 4); // the letter l advances by three
    EXPECT_EQ(Ink(0, 0, 1, "l\nl"), expected);
    EXPECT_EQ(Ink(0, 0, 0, "l\x80\xff\nl"), expected) << "codes without a list draw nothing";
}

TEST_F(DrawTextGLTest, LeavesThePixelStoreAlone) {
    const GLenum names[] = {GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS,  GL_UNPACK_SKIP_PIXELS,
                            GL_UNPACK_ALIGNMENT,  GL_UNPACK_SWAP_BYTES, GL_UNPACK_LSB_FIRST};
    const GLint values[] = {17, 2, 3, 2, 1, 1};
    for (std::size_t i = 0; i < 6; ++i)
        glPixelStorei(names[i], values[i]);
    m_Target.set(nullptr);
    glRasterPos2i(1, 1);
    glutBitmapCharacter(g_Helvetica12, 'A');
    glutBitmapCharacter(g_Helvetica12, 31);
    glutBitmapCharacter(g_Helvetica12, 127);
    glutBitmapCharacter(g_Helvetica12, -1);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(State(names[i]), values[i]) << names[i];
    GLfloat position[4];
    glGetFloatv(GL_CURRENT_RASTER_POSITION, position);
    EXPECT_EQ(position[0], 1.0f + 9.0f) << "only the A moved the raster position";
}

} // namespace
