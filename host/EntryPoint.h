#pragma once

#include "sdk/HostApi.h"

// The one symbol that the plug-in module exports; the editing program calls it for every command. It may be
// called from any thread, and again from inside the host's own callbacks. It never throws: the result is the
// command's error code, or PF_Err_NONE for an unknown command.
extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data,
                                                                        PF_OutData* out_data,
                                                                        PF_ParamDef* params[],
                                                                        PF_LayerDef* output, void* extra);
