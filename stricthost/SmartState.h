#pragma once

#include <map>
#include <memory>
#include <vector>

#include "stricthost/ReadOnlyWorld.h"

namespace stricthost {

// What the plug-in checked out for one smart frame. Lives from pre-render to the end of render.
struct SmartState {
    struct Layer {
        A_long index;       // of the layer parameter; 0 is the input
        HostTime time;      // that the plug-in requested
        PF_LRect rect;      // area that the plug-in receives, in layer coordinates
        bool taken = false; // true after its pixels were checked out
    };
    std::map<A_long, Layer> layers; // by checkout id
    std::vector<std::unique_ptr<ReadOnlyWorld>> worlds;
    World* output = nullptr;
    PF_EffectWorld outputDef = {};
    bool outputTaken = false;
    unsigned layersTaken = 0;
};

} // namespace stricthost
