#pragma once

#include <cstdint>

#include "AE_EffectCBSuites.h"

namespace stricthost {

// The handle functions, which the suite and the utility callbacks share.
const PF_HandleSuite1& HandleFunctions();

// Worlds that a plug-in makes for itself.
PF_Err CreatePluginWorld(PF_ProgPtr effect, A_long width, A_long height, std::uint32_t format,
                         PF_EffectWorld* def);
PF_Err DisposePluginWorld(PF_ProgPtr effect, PF_EffectWorld* def);

} // namespace stricthost
