#pragma once

// The headers of After Effects' suites, in an order in which the published ones compile.
#include "sdk/HostApi.h"

#include <AE_EffectCBSuites.h>
#include <AE_EffectSuites.h>
#include <AE_GeneralPlug.h>
