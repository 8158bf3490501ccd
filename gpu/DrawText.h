#pragma once

#include <string>

namespace Utils {

// Draws ASCII text in the current colour into the bound framebuffer, under the current matrices; one unit
// must be one pixel. The last of lineCount rows has its base line at y + 4, the others stand 16 higher each.
// lineCount below 2: all of the text on one row. Otherwise each line that ends with '\n' takes a row, highest
// first; empty lines take none, and neither does a last line without '\n'.
// Render thread; the glyphs are kept in display lists of the GL context.
void DrawText(int x, int y, int lineCount, const std::string& text);

} // namespace Utils
