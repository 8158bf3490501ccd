#pragma once

#include "stricthost/World.h"

namespace stricthost {

// Copies the rectangle `from` of the source to the rectangle `to` of the target, scaled to the nearest pixel
// where the sizes differ. Null: the whole world. Rectangles are clipped to their worlds. False, without a
// change, when the depths differ.
bool CopyWorld(const World& source, World& target, const PF_Rect* from, const PF_Rect* to);
// Writes one pixel, in the world's own format, over `area`; null for the whole world.
void FillWorld(World& world, const void* pixel, const PF_Rect* area);

} // namespace stricthost
