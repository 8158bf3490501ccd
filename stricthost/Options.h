#pragma once

#include <functional>
#include <set>
#include <string>

#include "AE_Effect.h"
#include "AE_GeneralPlug.h"
#include "pictures/Picture.h"

namespace stricthost {

enum class Personality {
    AfterEffects,      // smart render for plug-ins that say they can
    AfterEffectsPlain, // frame set-up, render and set-down
    Premiere,
};

struct Options {
    Personality personality = Personality::AfterEffects;
    // The interface's version as the host tells it; negative: 28 in After Effects and 4 in Premiere Pro.
    A_short apiMajor = 13;
    A_short apiMinor = -1;
    // What a plug-in hears as the path of its own file; set from the bundle's path when left empty.
    std::string pluginPath;
    std::set<std::string> missingSuites; // names of suites that cannot be acquired
    long allocations = -1;    // handles that can be made before memory runs out; negative: no limit
    unsigned rowPadding = 16; // bytes after the pixels of each row of a world
    // The GL context of the calling thread, compared before and after every command; null: not compared.
    void* (*currentContext)() = nullptr;
    // Whether output pixels that were never written and inputs that were written are looked for. Costs a pass
    // over the pixels of each.
    bool checkPixels = true;
    // The composition or sequence that holds the layer: pixels, and width / height of a pixel. 0: the layer's
    // own size.
    A_long compWidth = 0;
    A_long compHeight = 0;
    A_Ratio compAspect = {1, 1};
    // Renders the layer before the effect at value / scale seconds, in the depth of the frame that asks.
    // Called on the thread that renders. Without it that is an error for the plug-in.
    std::function<fxhost::Picture(A_long value, A_u_long scale)> upstreamFrame;
    // Premiere Pro: the format of all worlds, whatever formats the plug-in declared; 0: a declared one. With
    // PixelFormats::Bgra8 the host hands over its own B, G, R, A pixels, for frames of 8 bits.
    std::uint32_t undeclaredFormat = 0;
    A_Err registerError = A_Err_NONE;    // what registering with the AEGP layer gives
    std::set<PF_ParamType> refusedTypes; // kinds of parameters that this host does not take
    bool allowParamGap = false; // a count of parameters beyond the added ones is right, not a violation
};

} // namespace stricthost
