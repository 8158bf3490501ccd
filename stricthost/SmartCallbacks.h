#pragma once

#include "sdk/HostApi.h"

namespace stricthost {

// The callbacks that SMART_PRE_RENDER and SMART_RENDER carry in their extra argument.
PF_PreRenderCallbacks PreRenderTable();
PF_SmartRenderCallbacks SmartRenderTable();

} // namespace stricthost
