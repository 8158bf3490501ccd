#pragma once

#include <string>
#include <vector>

#include "pictures/Picture.h"

namespace fxhost {

struct SheetCell {
    Picture picture;
    std::string label; // ASCII; what does not fit under the picture is cut off
};

// An opaque 8-bit picture of all cells in rows of `columns`, each scaled down to at most `cellWidth` pixels
// and laid over a checkerboard where it is transparent, with its label below. Cells may differ in size and
// depth.
Picture MakeContactSheet(const std::vector<SheetCell>& cells, unsigned columns, unsigned cellWidth);

} // namespace fxhost
