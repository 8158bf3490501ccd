#pragma once

#include "sdk/HostApi.h"

namespace Adapter {

// Size in pixels and pixel aspect ratio of the composition (After Effects) or sequence (Premiere Pro) that
// contains the effect's layer. A host that does not provide them leaves the layer's own size and an aspect
// ratio of 1.
void GetCompDimensions(PF_InData* in, unsigned& width, unsigned& height, float& pixelAspect);
void GetCompDimensionsPr(PF_InData* in, unsigned& width, unsigned& height, float& pixelAspect);

} // namespace Adapter
