#pragma once

#include <string>

#undef DrawText // a macro of windows.h

namespace Utils {

// Draws ASCII text in the current colour into the bound framebuffer. One unit of the current matrices must be
// one pixel. There are lineCount rows, 16 pixels apart; the base line of the last one is at y + 4. With
// lineCount below 2 the whole text is one row. Otherwise each line that ends with '\n' is a row, from the
// highest down. Empty lines and a last line without '\n' are not drawn. Needs the engine's GL context to be
// current; the glyphs are display lists of that context.
void DrawText(int x, int y, int lineCount, const std::string& text);

} // namespace Utils
