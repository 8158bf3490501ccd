#pragma once

#include "host/CommandCall.h"

// One function for each command, grouped by the source file that defines it. Each returns the command's error
// code and may throw; the entry point converts exceptions to error codes.
namespace Adapter {

// GlobalSetup.cpp
PF_Err About(CommandCall& call);
PF_Err GlobalSetup(CommandCall& call);

// ParamsSetup.cpp
PF_Err ParamsSetup(CommandCall& call);

// Sequence.cpp
PF_Err SequenceSetup(CommandCall& call);
PF_Err SequenceResetup(CommandCall& call);
PF_Err SequenceFlatten(CommandCall& call);
PF_Err SequenceSetdown(CommandCall& call);

// The id under which smart pre-render checks out the input layer for smart render.
constexpr A_long SmartInputCheckout = 0x123456;

// FrameSizing.cpp
PF_Err FrameSetup(CommandCall& call);
PF_Err FrameSetdown(CommandCall& call);
PF_Err SmartPreRender(CommandCall& call);

// Render.cpp
PF_Err ClassicRender(CommandCall& call);
PF_Err SmartRender(CommandCall& call);

// UserInterface.cpp
PF_Err UserChangedParam(CommandCall& call);
PF_Err UpdateParamsUi(CommandCall& call);
PF_Err Event(CommandCall& call);

} // namespace Adapter
