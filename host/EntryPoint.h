#pragma once

#include "AE_Effect.h"

// The one symbol that the plug-in module exports: the editing program calls it with every command.
// Any thread, also re-entrantly from within the host's own callbacks. Never throws; the result is the
// command's error code, PF_Err_NONE for commands that it does not know.
extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data,
                                                                        PF_OutData* out_data,
                                                                        PF_ParamDef* params[],
                                                                        PF_LayerDef* output, void* extra);
