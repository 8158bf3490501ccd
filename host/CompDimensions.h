#pragma once

#include "AE_Effect.h"
#include "host/SequenceRecord.h"

class IPlugin;

namespace Adapter {

// Size in pixels and pixel aspect of the composition (After Effects) or sequence (Premiere Pro) that holds
// the effect's layer. A host that cannot tell leaves the layer's own size and an aspect of 1.
void GetCompDimensions(PF_InData* in, unsigned& width, unsigned& height, float& pixelAspect);
void GetCompDimensionsPr(PF_InData* in, unsigned& width, unsigned& height, float& pixelAspect);

// Reads the above into the record, and tells the engine about instance and composition.
void SelectForSizing(IPlugin& engine, PF_InData* in, SequenceRecord& record);

} // namespace Adapter
