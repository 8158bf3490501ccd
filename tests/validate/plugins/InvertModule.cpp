#include "tests/validate/plugins/Invert.h"

// The good plug-in as a module.
extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(PF_Cmd command, PF_InData* in,
                                                                        PF_OutData* out,
                                                                        PF_ParamDef* params[],
                                                                        PF_LayerDef* output, void* extra) {
    return InvertMain(command, in, out, params, output, extra);
}
