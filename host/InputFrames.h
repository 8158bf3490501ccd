#pragma once

#include "sdk/HostApi.h"

class IPlugin;

namespace Adapter {

// Indices of the engine's input textures: the current frame of the effect's own layer, and the frames that
// are 1, 2 and more time steps earlier.
constexpr int InputFrame = -1;
inline int EarlierFrame(int steps) {
    return -1 - steps;
}

// Uploads a world with the given bits per channel as one of these textures, unless the engine needs no
// inputs. In Premiere Pro only the visible part of the clip is uploaded. An empty world is uploaded as one
// transparent pixel. Throws PF_Err_INTERNAL_STRUCT_DAMAGED when the rows of the world are too short for the
// depth. The frame lock must be held.
void UploadInputSurface(IPlugin& engine, PF_InData* in, PF_LayerDef* world, unsigned bits, int index);

// Uploads as many earlier frames of the effect's layer as the engine asks for. The host renders each of them
// as it is upstream of the effect. Frames before time 0 are skipped. Throws 13 when the host lacks a suite
// that this needs, and the host's error when it cannot render a frame. The frame lock must be held.
void UploadFeedbackFrames(IPlugin& engine, PF_InData* in, unsigned bits);

} // namespace Adapter
