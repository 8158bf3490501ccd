#pragma once

#include <cstdint>

#include "sdk/HostApi.h"

namespace stricthost {

// Makes a world that the plug-in owns until it disposes of it; transparent black. width and height in pixels.
// PF_Err_BAD_CALLBACK_PARAM for negative sizes and unknown formats.
PF_Err CreatePluginWorld(PF_ProgPtr effect, A_long width, A_long height, std::uint32_t format,
                         PF_EffectWorld* def);
// Frees such a world; an error and a violation for any other one.
PF_Err DisposePluginWorld(PF_ProgPtr effect, PF_EffectWorld* def);

} // namespace stricthost
