#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>

#include "pictures/Picture.h"
#include "sdk/SuitesApi.h"
#include "stricthost/Quirks.h"

namespace stricthost {

// The editing program that the host emulates.
enum class Personality {
    AfterEffects,      // smart render, for plug-ins that support it
    AfterEffectsPlain, // frame set-up, render and frame set-down, for every plug-in
    Premiere,
};

// How a host behaves. The defaults describe the most forgiving host of each personality.
struct Options {
    Personality personality = Personality::AfterEffects;
    // Version of the plug-in interface. apiMinor negative: 28 in After Effects and 4 in Premiere Pro.
    A_short apiMajor = 13;
    A_short apiMinor = -1;
    Quirks quirks;
    // Interrupts the first frame command that reaches this many callbacks, as a user does who moves a slider
    // while a frame renders: that callback and the later ones of the frame return PF_Interrupt_CANCEL. 0:
    // never.
    unsigned interruptAt = 0;
    // Platform data 6 for the quirk "bundle-reference": a CFBundleRef that the caller owns. Null: not
    // available.
    void* bundleReference = nullptr;
    // Path that the plug-in receives as its own file. Empty: the path of the bundle.
    std::string pluginPath;
    std::set<std::string> missingSuites; // names of suites that cannot be acquired
    long allocations = -1;    // number of handles that can be made before memory runs out; negative: no limit
    unsigned rowPadding = 16; // bytes after the pixels of each row of a world
    std::uint8_t paddingValue = 0xA5; // of the bytes around the rows
    // Returns the GL context of the calling thread, which is compared before and after every command. Null:
    // no comparison.
    void* (*currentContext)() = nullptr;
    // Looks for output pixels that were never written and inputs that were written. Costs one pass over the
    // pixels of each world.
    bool checkPixels = true;
    // Composition or sequence that holds the layer: size in pixels, and width / height of a pixel. 0: the
    // size of the layer.
    A_long compWidth = 0;
    A_long compHeight = 0;
    A_Ratio compAspect = {1, 1};
    // Renders the layer before the effect at value / scale seconds, in the depth of the frame that requests
    // it. Called on the thread that renders. Null: such requests of the plug-in fail.
    std::function<fxhost::Picture(A_long value, A_u_long scale)> upstreamFrame;
    A_Err registerError = A_Err_NONE;    // result of registering with the AEGP layer
    std::set<PF_ParamType> refusedTypes; // kinds of parameters that this host does not support
    // Accepts a parameter count that is larger than the number of added parameters.
    bool allowParamGap = false;
};

} // namespace stricthost
