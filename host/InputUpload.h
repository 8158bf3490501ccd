#pragma once

#include "AE_Effect.h"

namespace Adapter {

// Engine texture indices that stand for the effect's own layer: the frame itself, and the frames k = 1, 2...
// time steps earlier.
constexpr int InputFrame = -1;
inline int EarlierFrame(int steps) {
    return -1 - steps;
}

// Uploads a world of the given bits per channel as one of these textures, if the engine wants inputs at all.
// In Premiere Pro only the part that the clip shows is uploaded. An empty world counts as one transparent
// pixel. Throws PF_Err_INTERNAL_STRUCT_DAMAGED when the world's rows are too short for the depth. The frame
// lock must be held.
void UploadInputSurface(PF_InData* in, PF_LayerDef* world, unsigned bits, int index);

} // namespace Adapter
