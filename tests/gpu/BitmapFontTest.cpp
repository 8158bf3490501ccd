#include "gpu/BitmapFont.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

// Size and ink as text, so that two glyphs that look alike compare equal.
std::string Look(const BitmapGlyph& glyph) {
    std::string look = std::to_string(glyph.yOrigin) + "/" + std::to_string(glyph.width) + ":";
    const int rowBytes = (glyph.width + 7) / 8;
    for (int i = 0; i < rowBytes * glyph.height; ++i)
        look += std::to_string(glyph.bitmap[i]) + " ";
    return look;
}

TEST(BitmapFontTest, EveryPrintableCharacterHasItsOwnLookInsideTheLine) {
    ASSERT_EQ(g_Helvetica12.first, 32);
    ASSERT_EQ(g_Helvetica12.count, 95);
    std::set<std::string> looks;
    for (int code = 32; code < 127; ++code) {
        const BitmapGlyph* glyph = g_Helvetica12.glyphs[code - 32];
        ASSERT_NE(glyph, nullptr);
        EXPECT_GE(-glyph->yOrigin, -3) << char(code);
        EXPECT_LE(-glyph->yOrigin + float(glyph->height), 10) << char(code);
        EXPECT_GT(glyph->advance, float(glyph->width)) << char(code);
        const bool isNew = looks.insert(Look(*glyph)).second;
        EXPECT_EQ(isNew, code != 'l') << char(code) << ": only I and l are the same stroke";
    }
}

TEST(BitmapFontTest, RowsLieBottomFirst) {
    const BitmapGlyph& letter = *g_Helvetica12.glyphs['L' - 32];
    ASSERT_EQ(letter.width, 5);
    EXPECT_EQ(letter.bitmap[0], 0xF8) << "the foot";
    EXPECT_EQ(letter.bitmap[letter.height - 1], 0x80) << "the stem";
}

} // namespace
