#pragma once

#include <map>
#include <memory>
#include <vector>

#include "stricthost/RenderCommands.h"

namespace stricthost {

// What one smart frame has checked out. Lives from pre-render to the end of render.
struct SmartState {
    struct Layer {
        A_long index;
        PF_LRect rect; // of the layer, what the plug-in gets
        bool taken = false;
    };
    std::map<A_long, Layer> layers; // by checkout id
    std::vector<std::unique_ptr<ReadOnlyWorld>> worlds;
    World* output = nullptr;
    PF_EffectWorld outputDef = {};
    bool outputTaken = false;
    unsigned layersTaken = 0;
};

PF_PreRenderCallbacks PreRenderTable();
PF_SmartRenderCallbacks SmartRenderTable();

bool IsEmpty(const PF_LRect& rect);
PF_LRect Intersection(const PF_LRect& a, const PF_LRect& b);

} // namespace stricthost
