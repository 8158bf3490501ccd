#pragma once

// The headers of Premiere Pro's own suites, in an order in which the published ones compile.
#include "sdk/HostApi.h"

#include <PrSDKPixelFormat.h>
#include <PrSDKTypes.h>

#include <PrSDKAESupport.h>
#include <PrSDKSequenceInfoSuite.h>
