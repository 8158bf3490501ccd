#pragma once

#include "AE_Effect.h"

namespace Adapter {

// Uploads as many earlier frames of the effect's layer as the engine asks for, each rendered by the host as
// it stands upstream of the effect. Frames before time 0 are left out. Throws 13 when the host lacks one of
// the suites for it, and the host's error when it cannot render.
void UploadFeedbackFrames(PF_InData* in, unsigned bits);

} // namespace Adapter
