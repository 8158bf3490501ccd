#pragma once

#include <string>
#include <vector>

#include "pictures/Picture.h"
#include "toolkit/ParameterValues.h"

namespace fxhost {

struct LayerInput {
    unsigned index = 0; // of the layer parameter
    Picture picture;
};

// Everything that one frame is rendered from.
struct FrameInputs {
    Picture input;                          // its depth is the frame's
    double time = 0;                        // seconds
    std::vector<ParameterSetting> settings; // parameters that are not named keep their defaults
    std::vector<LayerInput> layers;         // layers that are not named stay empty
};

// Renders frames of one effect; what stands between the tool and the engine. One thread.
class FrameRenderer {
public:
    virtual ~FrameRenderer() = default;

    // The effect's parameters in its own order, with their values at creation.
    virtual std::vector<Parameter> parameters() = 0;

    // One frame, of the size that the effect asks for. When shaders do not compile, the picture is the one
    // that the host would show. Throws EffectFailure when there is no picture at all.
    virtual Picture render(const FrameInputs& request) = 0;
};

} // namespace fxhost
