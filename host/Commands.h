#pragma once

#include "AE_Effect.h"
#include "engine/IPlugin.h"
#include "host/CommandGuard.h"

// One function a command. Each returns the command's error code and may throw; the entry point turns what is
// thrown into an error code. The arguments are the host's, valid for the command only.
namespace Adapter {

struct Call {
    PF_InData* in;
    PF_OutData* out;
    PF_ParamDef** params; // null for the commands that get none
    PF_LayerDef* output;  // PF_Cmd_RENDER only
    void* extra;
    CommandGuard& guard;
    IPlugin& engine;
};

PF_Err About(Call& call);
PF_Err GlobalSetup(Call& call);
PF_Err ParamsSetup(Call& call);
PF_Err SequenceSetup(Call& call);
PF_Err SequenceResetup(Call& call);
PF_Err SequenceFlatten(Call& call);
PF_Err SequenceSetdown(Call& call);
PF_Err FrameSetup(Call& call);
PF_Err ClassicRender(Call& call);
PF_Err FrameSetdown(Call& call);
PF_Err UserChangedParam(Call& call);
PF_Err UpdateParamsUi(Call& call);
PF_Err Event(Call& call);
PF_Err SmartPreRender(Call& call);
PF_Err SmartRender(Call& call);

} // namespace Adapter
