#pragma once

// Bitmap fonts, in the record layout of GLUT.

struct BitmapGlyph {
    int width; // pixels
    int height;
    float xOrigin; // raster position inside the bitmap, in pixels from its lower left corner
    float yOrigin;
    float advance;               // pixels to the next character
    const unsigned char* bitmap; // bottom row first, one bit a pixel, highest bit left, rows of whole bytes
};

struct BitmapFont {
    const char* name;
    int count; // number of codes, which run from first to first + count - 1
    int first;
    const BitmapGlyph* const* glyphs; // null for a missing one
};

// Twelve pixels, proportional, sans serif, codes 32 to 126.
extern const BitmapFont Helvetica12;

// Draws a glyph at the current raster position and advances the position. Codes without a glyph draw nothing.
// NOLINTNEXTLINE(readability-identifier-naming): as in GLUT
void glutBitmapCharacter(const BitmapFont& font, int character);
