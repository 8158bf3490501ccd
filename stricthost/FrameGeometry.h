#pragma once

#include <cstdint>

#include "stricthost/Call.h"
#include "stricthost/Frame.h"
#include "stricthost/World.h"

namespace stricthost {

struct Extents {
    A_long width;
    A_long height;
};

// What the commands of one frame share.
struct FrameState {
    const FrameRequest& request;
    std::uint32_t format;
    std::uint32_t patternSeed;
};

// The format of a frame. Throws std::invalid_argument for a depth or format that the host cannot hand over.
std::uint32_t FrameFormat(const HostCore& host, const FrameRequest& request);
// The layer at full resolution, in pixels.
Extents LayerSize(const FrameRequest& request);
// What the suites tell about the composition.
Extents CompSize(const Call& call);

// Fills in what a rendering command carries, and notes the frame.
void FillFrame(Call& call, const FrameState& frame);

// Worlds for the call, which the caller retires. Null for an empty layer.
World* CreateInput(Call& call);
World* CreateLayer(Call& call, const fxhost::Picture& picture, A_long index);

// The frame's input covers this part of the layer.
PF_LRect InputRect(const FrameRequest& request);

} // namespace stricthost
