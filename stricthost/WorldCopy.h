#pragma once

#include "stricthost/World.h"

namespace stricthost {

// Copies `from` into `to`, null for the whole world each, stretched to the nearest pixel where the sizes
// differ. Both worlds have one depth; rectangles are cut to their worlds. False when the depths differ.
bool CopyWorld(const World& source, World& target, const PF_Rect* from, const PF_Rect* to);
// Writes one pixel, in the world's own format, over `area`; null for the whole world.
void FillWorld(World& world, const void* pixel, const PF_Rect* area);

} // namespace stricthost
