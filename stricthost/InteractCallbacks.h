#pragma once

#include "sdk/HostApi.h"

namespace stricthost {

// The interaction callbacks that every command carries in PF_InData: parameters, abort and progress.
PF_InteractCallbacks InteractTable();

} // namespace stricthost
