#pragma once

#include "sdk/SuitesApi.h"

namespace stricthost {

// The memory functions, which the handle suite and the utility callbacks share.
const PF_HandleSuite1& HandleFunctions();

} // namespace stricthost
