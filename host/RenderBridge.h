#pragma once

#include "AE_Effect.h"

namespace Adapter {

// One frame: describes it to the engine, uploads the inputs, runs the engine and copies its picture into
// `output`. `input` null stands for the layer of params[0]. An instance without data, an engine that declines
// and one without a result give a copy of the input. Throws what the engine throws, the error of a missing
// suite, and 13 for the suites of feedback frames.
PF_Err Render(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output, PF_LayerDef* input);

} // namespace Adapter
