#pragma once

#include "sdk/HostApi.h"

namespace stricthost {

// Name of a command without its prefix, such as "RENDER"; "a command" for a code that this host never sends.
const char* CommandName(PF_Cmd command);

} // namespace stricthost
