#include "gpu/DrawText.h"

#include "gpu/BitmapFont.h"
#include "gpu/GLErrors.h"
#include "platform/GL.h"

namespace {

constexpr GLsizei s_ListCount = 128;
constexpr int s_LineHeight = 16;
constexpr int s_BaseLine = 4;

// Makes one display list for each character code. Returns 0 when OpenGL has no lists left.
GLuint MakeLists() {
    const GLuint base = glGenLists(s_ListCount);
    if (base == 0)
        return 0;
    for (GLsizei code = 0; code < s_ListCount; ++code) {
        glNewList(base + static_cast<GLuint>(code), GL_COMPILE);
        glutBitmapCharacter(Helvetica12, code);
        glEndList();
    }
    return base;
}

void DrawRow(int x, int y, const char* text, std::size_t length) {
    glRasterPos2i(x, y);
    glCallLists(static_cast<GLsizei>(length), GL_UNSIGNED_BYTE, text);
}

// Draws the lines of the text from the highest of `rows` rows down.
void DrawLines(int x, int y, int rows, const std::string& text) {
    std::size_t start = 0;
    for (int remaining = rows - 1; remaining >= 0;) {
        const std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            return;
        if (end > start) {
            DrawRow(x, y + s_LineHeight * remaining, text.data() + start, end - start);
            --remaining;
        }
        start = end + 1;
    }
}

} // namespace

void Utils::DrawText(int x, int y, int lineCount, const std::string& text) {
    static GLuint base = 0;
    // The lists are destroyed with their GL context; a later context needs its own.
    if (base == 0 || !glIsList(base))
        base = MakeLists();
    if (base == 0)
        return;
    glListBase(base);
    if (lineCount < 2)
        DrawRow(x + 1, y + s_BaseLine, text.data(), text.size());
    else
        DrawLines(x + 1, y + s_BaseLine, lineCount, text);
    GLErrors::Check("Utils::DrawText");
}
