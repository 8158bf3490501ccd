#include "gpu/BitmapFont.h"

#include "platform/GL.h"

namespace {

struct StoreRow {
    GLenum name;
    GLint value;
};
// The layout of glyph bitmaps in memory.
constexpr StoreRow s_GlyphStore[] = {
    {GL_UNPACK_SWAP_BYTES, GL_FALSE}, {GL_UNPACK_LSB_FIRST, GL_FALSE}, {GL_UNPACK_ROW_LENGTH, 0},
    {GL_UNPACK_SKIP_ROWS, 0},         {GL_UNPACK_SKIP_PIXELS, 0},      {GL_UNPACK_ALIGNMENT, 1},
};

// Sets the six values, and restores the earlier ones at the end of the scope.
class GlyphStoreScope {
public:
    GlyphStoreScope() {
        for (unsigned i = 0; i < s_Count; ++i) {
            glGetIntegerv(s_GlyphStore[i].name, &m_Before[i]);
            glPixelStorei(s_GlyphStore[i].name, s_GlyphStore[i].value);
        }
    }
    ~GlyphStoreScope() {
        for (unsigned i = 0; i < s_Count; ++i)
            glPixelStorei(s_GlyphStore[i].name, m_Before[i]);
    }
    GlyphStoreScope(const GlyphStoreScope&) = delete;
    GlyphStoreScope& operator=(const GlyphStoreScope&) = delete;

private:
    static constexpr unsigned s_Count = sizeof s_GlyphStore / sizeof s_GlyphStore[0];
    GLint m_Before[s_Count] = {};
};

} // namespace

void glutBitmapCharacter(const BitmapFont& font, int character) {
    if (character < font.first || character - font.first >= font.count)
        return;
    const BitmapGlyph* glyph = font.glyphs[character - font.first];
    if (!glyph)
        return;
    const GlyphStoreScope store;
    glBitmap(glyph->width, glyph->height, glyph->xOrigin, glyph->yOrigin, glyph->advance, 0.0f,
             glyph->bitmap);
}
