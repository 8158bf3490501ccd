#include <set>

#include "gpu/BitmapFont.h"
#include "gpu/DrawText.h"
#include "tests/gpu/GLFixture.h"

namespace {

using Ink = std::set<std::pair<int, int>>; // pixels that are set, from the lower left corner

constexpr int s_Width = 48, s_Height = 64;

class TextGLTest : public GLFixture {
protected:
    static Ink Draw(int x, int y, int lineCount, const std::string& text) {
        RenderTarget target;
        target.init(s_Width, s_Height, 8);
        target.set(nullptr);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0, s_Width, 0, s_Height, -1, 1);
        Utils::DrawText(x, y, lineCount, text);
        const std::vector<float> pixels = Stored(target);
        Ink ink;
        for (int i = 0; i < s_Width * s_Height; ++i)
            if (pixels[std::size_t(i) * 4] > 0.5f)
                ink.emplace(i % s_Width, i / s_Width);
        return ink;
    }
};

// The letter l is a bar of 9 pixels, one right of its raster position, and advances by 3.
Ink Bars(const Ink& feet) {
    Ink ink;
    for (const auto& [x, y] : feet)
        for (int i = 0; i < 9; ++i)
            ink.emplace(x, y + i);
    return ink;
}

TEST_F(TextGLTest, RowsAre16PixelsApartAndTheLastBaseLineIsAt4) {
    const Ink three = Bars({{7, 39}, {7, 23}, {7, 7}});
    EXPECT_EQ(Draw(5, 3, 3, "l\nl\nl\n"), three);
    EXPECT_EQ(Draw(5, 3, 3, "l\nl\nl\nl\nl\n"), three) << "no more than the lines counted";
    EXPECT_EQ(Draw(5, 3, 3, "l\n\n\nl\n"), Bars({{7, 39}, {7, 23}})) << "blank lines take no row";
    EXPECT_EQ(Draw(5, 3, 2, "l\nl"), Bars({{7, 23}})) << "a last line without a line feed is not drawn";
}

// Runs in a new GL context, which lacks the display lists of the test before.
TEST_F(TextGLTest, WithOneRowTheWholeTextIsDrawnInIt) {
    EXPECT_EQ(Draw(0, 0, 1, "l\nl"), Bars({{2, 4}, {5, 4}}));
    EXPECT_EQ(Draw(0, 0, 0, "l\x80\xff\nl"), Bars({{2, 4}, {5, 4}})) << "codes without a glyph draw nothing";
    Ink letter = Bars({{2, 4}});
    for (int x = 3; x < 7; ++x)
        letter.emplace(x, 4);
    EXPECT_EQ(Draw(0, 0, 1, "L"), letter) << "a stem with its foot at the right";
}

TEST_F(TextGLTest, DrawingGlyphsRestoresThePixelStore) {
    RenderTarget target;
    target.init(2, 2, 8);
    target.set(nullptr);
    const std::map<GLenum, GLint> store = {{GL_UNPACK_ROW_LENGTH, 17}, {GL_UNPACK_SKIP_ROWS, 2},
                                           {GL_UNPACK_SKIP_PIXELS, 3}, {GL_UNPACK_ALIGNMENT, 2},
                                           {GL_UNPACK_SWAP_BYTES, 1},  {GL_UNPACK_LSB_FIRST, 1}};
    for (const auto& [name, value] : store)
        glPixelStorei(name, value);
    glRasterPos2i(0, 0); // the middle
    for (const int code : {int('A'), 31, 127, -1})
        glutBitmapCharacter(Helvetica12, code);
    for (const auto& [name, value] : store)
        EXPECT_EQ(State(name), value) << name;
    GLfloat position[4];
    glGetFloatv(GL_CURRENT_RASTER_POSITION, position);
    EXPECT_EQ(position[0], 1.0f + 9.0f) << "only the A moved the raster position";
}

TEST(BitmapFontTest, EveryPrintableCharacterHasADistinctGlyphWithinTheLine) {
    std::set<std::vector<int>> looks;
    for (int code = 32; code < 127; ++code) {
        const BitmapGlyph& glyph = *Helvetica12.glyphs[code - 32];
        EXPECT_TRUE(glyph.yOrigin <= 3 && float(glyph.height) - glyph.yOrigin <= 10) << char(code);
        std::vector<int> look(glyph.bitmap, glyph.bitmap + (glyph.width + 7) / 8 * glyph.height);
        look.insert(look.end(), {static_cast<int>(glyph.yOrigin), glyph.width});
        EXPECT_EQ(looks.insert(look).second, code != 'l') << char(code) << ": only I and l look the same";
    }
}

} // namespace
