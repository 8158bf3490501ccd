#pragma once

#include "pictures/Picture.h"

namespace fxhost {

// How the colours of a file relate to its alpha channel. Pictures in memory are always straight
// (unassociated).
enum class AlphaMode {
    Auto,          // as the format or the file defines it; straight for video and where neither defines it
    Straight,      // colours are independent of alpha
    Premultiplied, // colours are multiplied by alpha (associated)
};

// Multiplies the colours by alpha, or divides them by alpha. Integers are rounded to nearest and clamped.
// Where alpha is 0, colours are left as they are: they cannot be divided, and light without coverage is kept.
void Premultiply(Picture& picture);
void Unpremultiply(Picture& picture);
// Sets alpha to its full value everywhere.
void MakeOpaque(Picture& picture);
// The same picture with multiplied colours.
Picture Premultiplied(Picture picture);

} // namespace fxhost
