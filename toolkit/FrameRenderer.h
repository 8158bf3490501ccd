#pragma once

#include <string>
#include <vector>

#include "pictures/Picture.h"
#include "toolkit/ParameterValues.h"

namespace fxhost {

struct LayerInput {
    unsigned index = 0; // index of the layer parameter in the list of parameters
    Picture picture;
};

// Everything that one frame is rendered from.
struct FrameInputs {
    Picture input;                          // the input layer; its depth is the depth of the frame
    double time = 0;                        // seconds
    std::vector<ParameterSetting> settings; // parameters that are not listed keep their defaults
    std::vector<LayerInput> layers;         // layers that are not listed are empty
};

// Renders frames of one effect. All calls come from one thread.
class FrameRenderer {
public:
    virtual ~FrameRenderer() = default;

    // The effect's parameters in the order of declaration, with their values at creation.
    virtual std::vector<Parameter> parameters() = 0;

    // Renders one frame of the size that the effect asks for. When a shader does not compile, the picture
    // shows the error text, as in the host. Throws EffectFailure when there is no picture.
    virtual Picture render(const FrameInputs& request) = 0;
};

} // namespace fxhost
