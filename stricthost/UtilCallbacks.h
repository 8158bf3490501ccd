#pragma once

#include "sdk/HostApi.h"

namespace stricthost {

// The utility callbacks that every command carries in PF_InData. Unsupported entries are null. Static.
struct _PF_UtilCallbacks* UtilTable();

} // namespace stricthost
