#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "AE_Effect.h"
#include "pictures/Picture.h"

namespace stricthost {

// A frame to render. The picture is handed over at the resolution of the frame, so it is already
// down-sampled.
struct FrameRequest {
    // Always A, R, G, B: the host reorders the channels for a world whose format differs. Null: an empty
    // layer. It must stay alive during the call.
    const fxhost::Picture* input = nullptr;
    // Bits per channel of the frame; 0: the input's.
    unsigned depth = 0;
    // Premiere Pro: the pixel format code of the frame, one that the plug-in declared; 0: its first of the
    // depth.
    std::uint32_t format = 0;

    A_long time = 0; // in units of 1 / timeScale seconds
    A_long timeStep = 1;
    A_long totalTime = 100;
    A_u_long timeScale = 25;

    PF_RationalScale downsampleX = {1, 1}; // 1/2: half resolution
    PF_RationalScale downsampleY = {1, 1};
    PF_RationalScale pixelAspect = {1, 1}; // width / height of a pixel
    // The layer at full resolution, pixels; 0: the input's size without the down-sampling.
    A_long layerWidth = 0;
    A_long layerHeight = 0;

    // Where the input's top left pixel lies on the layer, in pixels of the frame's resolution. Smart render.
    A_long inputX = 0;
    A_long inputY = 0;
    // The area that is wanted, in the same coordinates; none: the input's. Smart render.
    std::optional<PF_LRect> wanted;
    // The size of the output that the host prepares, pixels; 0: the input's. Plain render and Premiere Pro; a
    // plug-in may choose another one.
    A_long outputWidth = 0;
    A_long outputHeight = 0;
    // Premiere Pro: pixels and rows of the input before the visible part of the clip.
    A_long preEffectOriginX = 0;
    A_long preEffectOriginY = 0;
};

struct FrameResult {
    PF_Err error = PF_Err_NONE; // of the first command that failed
    // The rendered world without its padding, as A, R, G, B; empty after an error or when the plug-in renders
    // nothing.
    fxhost::Picture picture;
    // Where the picture's top left pixel lies on the layer, pixels of the frame's resolution.
    A_long originX = 0;
    A_long originY = 0;
    PF_OutFlags outFlags = 0; // of all commands together
    std::string message;      // that the plug-in wants shown
    // The plug-in asked for an output size that its flags do not allow it to choose, so it was not granted.
    bool resizeRefused = false;
};

} // namespace stricthost
