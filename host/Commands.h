#pragma once

#include "host/HostCall.h"

// One function for each command, grouped by the source file that defines it. Each returns the command's error
// code and may throw; the entry point converts exceptions to error codes.
namespace Adapter {

// GlobalSetup.cpp
PF_Err About(HostCall& call);
PF_Err GlobalSetup(HostCall& call);

// ParamsSetup.cpp
PF_Err ParamsSetup(HostCall& call);

// Sequence.cpp
PF_Err SequenceSetup(HostCall& call);
PF_Err SequenceResetup(HostCall& call);
PF_Err SequenceFlatten(HostCall& call);
PF_Err SequenceSetdown(HostCall& call);

// The id under which smart pre-render checks out the input layer for smart render.
constexpr A_long SmartInputCheckout = 0x123456;

// FrameSizing.cpp
PF_Err FrameSetup(HostCall& call);
PF_Err FrameSetdown(HostCall& call);
PF_Err SmartPreRender(HostCall& call);

// Render.cpp
PF_Err ClassicRender(HostCall& call);
PF_Err SmartRender(HostCall& call);

// UserInterface.cpp
PF_Err UserChangedParam(HostCall& call);
PF_Err UpdateParamsUi(HostCall& call);
PF_Err Event(HostCall& call);

} // namespace Adapter
