#pragma once

#include <string>

#include "pictures/Picture.h"
#include "sdk/HostApi.h"

namespace stricthost {

// What the commands of one frame produced.
struct FrameResult {
    PF_Err error = PF_Err_NONE; // of the first command that failed
    // The output world without its padding, as A, R, G, B. Empty after an error or when the plug-in renders
    // no pixels.
    fxhost::Picture picture;
    // Position of the picture's top left pixel on the layer, in pixels of the frame's resolution.
    A_long originX = 0;
    A_long originY = 0;
    PF_OutFlags outFlags = 0; // of all commands, combined
    std::string message;      // first message that the plug-in left for the user
    // True when the plug-in asked for an output size that its flags do not allow. The host then kept its own.
    bool resizeRefused = false;
};

} // namespace stricthost
