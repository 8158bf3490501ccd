#pragma once

#include <cstdint>

#include "stricthost/FrameSpec.h"
#include "stricthost/HostCall.h"
#include "stricthost/World.h"

namespace stricthost {

// A size in pixels.
struct Extents {
    A_long width;
    A_long height;
};

// The data that the commands of one frame share.
struct FrameState {
    const FrameSpec& spec;
    std::uint32_t format;      // of its worlds
    std::uint32_t patternSeed; // for the pattern that finds unwritten pixels
};

// Format of a frame's worlds. Throws std::invalid_argument for a depth or format that the host cannot
// deliver.
std::uint32_t FrameFormat(const HostCore& host, const FrameSpec& spec);
// Size of the layer at full resolution.
Extents LayerSize(const FrameSpec& spec);
// Size of the composition that the suites report; the layer's size unless Options give another one.
Extents CompSize(const HostCall& call);
// Area of the layer that the frame's input covers, in pixels of the frame's resolution.
PF_LRect InputRect(const FrameSpec& spec);

// True for rectangles without pixels.
bool IsEmpty(const PF_LRect& rect);
// The common area; all zero when there is none.
PF_LRect Intersection(const PF_LRect& a, const PF_LRect& b);
// Down-sampling factor as a number; 1 for a fraction with a zero in it.
double Factor(const PF_RationalScale& scale);

// Fills in the fields that rendering commands carry, and attaches the frame to the call.
void FillFrame(HostCall& call, const FrameState& frame);

// Make worlds for the call. The caller retires them in the host's WorldStore. Null for an empty layer.
World* CreateInput(HostCall& call);
World* CreateLayer(HostCall& call, const fxhost::Picture& picture, A_long index);

} // namespace stricthost
