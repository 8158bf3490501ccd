#pragma once

#include "sdk/HostApi.h"

class IPlugin;

namespace Adapter {

class CommandGuard;

// One command from the host with its arguments and the objects that serve it. The pointers are the host's and
// valid only during the command.
struct CommandCall {
    PF_InData* in;
    PF_OutData* out;
    PF_ParamDef** params; // null for commands without parameters
    PF_LayerDef* output;  // null for every command but PF_Cmd_RENDER
    void* extra;          // a structure that depends on the command, or null
    CommandGuard& guard;
    IPlugin& engine;
};

constexpr A_long PremiereId = 0x50724D72; // 'PrMr'; every other host counts as After Effects

inline bool IsPremiere(const PF_InData& in) {
    return in.appl_id == PremiereId;
}

// True for API versions that render again only on request.
inline bool NeedsForcedRerender(const PF_InData& in) {
    return in.version.major < 13 || in.version.minor < 9;
}

// False for After Effects with API version 13.0 or 13.1, where frames are sized without the frame lock.
inline bool TakesLockForSizing(const PF_InData& in) {
    return IsPremiere(in) || in.version.major != 13 || in.version.minor > 1;
}

} // namespace Adapter
