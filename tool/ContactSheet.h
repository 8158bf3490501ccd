#pragma once

#include <string>
#include <vector>

#include "pictures/Picture.h"

namespace fxhost {

struct SheetCell {
    Picture picture;
    std::string label; // ASCII; cut off at the width of the picture
};

// Makes an opaque 8-bit picture of all cells in rows of `columns`. Each cell is scaled down to at most
// `cellWidth` pixels, is composited over a checkerboard and has its label below it. Cells may differ in size
// and depth.
Picture MakeContactSheet(const std::vector<SheetCell>& cells, unsigned columns, unsigned cellWidth);

} // namespace fxhost
