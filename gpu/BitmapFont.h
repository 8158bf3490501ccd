#pragma once

// Bitmap fonts in the record layout that GLUT made common.

struct BitmapGlyph {
    int width; // pixels
    int height;
    float xOrigin; // of the raster position inside the bitmap, from its lower left corner
    float yOrigin;
    float advance;               // pixels to the next character
    const unsigned char* bitmap; // bottom row first, one bit a pixel, highest bit left, rows of whole bytes
};

struct BitmapFont {
    const char* name;
    int count; // codes first .. first + count - 1
    int first;
    const BitmapGlyph* const* glyphs; // null for a missing one
};

// Twelve pixels, proportional, sans serif, codes 32 to 126.
extern const BitmapFont g_Helvetica12;

// Draws the glyph at the current raster position and moves that on. Codes that the font lacks draw nothing.
void glutBitmapCharacter(const BitmapFont& font, int character);
