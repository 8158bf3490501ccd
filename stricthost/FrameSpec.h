#pragma once

#include <cstdint>
#include <optional>

#include "pictures/Picture.h"
#include "sdk/HostApi.h"

namespace stricthost {

// Describes one frame to render. The picture is given at the resolution of the frame, so it is already
// down-sampled. Rectangles include their left and top edge and exclude their right and bottom edge.
struct FrameSpec {
    // Pixels before the effect, as A, R, G, B: the host reorders the channels for a world whose format
    // differs. Null: an empty layer. The caller owns the picture and keeps it alive during the call.
    const fxhost::Picture* input = nullptr;
    // Bits per channel of the frame: 8, 16 or 32. 0: the depth of the input.
    unsigned depth = 0;
    // Premiere Pro: pixel format code of the frame, one that the plug-in declared. 0: the first format of the
    // frame's depth that the plug-in declared.
    std::uint32_t format = 0;

    A_long time = 0; // in units of 1 / timeScale seconds, like the next two
    A_long timeStep = 1;
    A_long totalTime = 100;
    A_u_long timeScale = 25; // units per second; not 0

    PF_RationalScale downsampleX = {1, 1}; // {1, 2}: half resolution
    PF_RationalScale downsampleY = {1, 1};
    PF_RationalScale pixelAspect = {1, 1}; // width / height of a pixel
    // Size of the layer at full resolution, in pixels. 0: worked out from the input and the down-sampling.
    A_long layerWidth = 0;
    A_long layerHeight = 0;

    // Smart render: position of the input's top left pixel on the layer, in pixels of the frame's resolution.
    A_long inputX = 0;
    A_long inputY = 0;
    // Smart render: requested area, in the same coordinates. Empty: the area of the input.
    std::optional<PF_LRect> wanted;
    // Plain render and Premiere Pro: size in pixels of the output that the host proposes. 0: the input's. The
    // plug-in may choose another size when its flags allow that.
    A_long outputWidth = 0;
    A_long outputHeight = 0;
    // Premiere Pro: columns and rows of the input before the visible part of the clip, in pixels.
    A_long preEffectOriginX = 0;
    A_long preEffectOriginY = 0;
};

} // namespace stricthost
