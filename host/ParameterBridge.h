#pragma once

#include "AEGP_SuiteHandler.h"
#include "AE_Effect.h"

// Parameter traffic between host and engine, through the maps of HostState. The engine's current instance is
// meant throughout. Calls run under the global mutex.
namespace Adapter {

// Gives the engine the host's value of every published parameter at in->current_time. Layers, textures and
// paths only for a render. The first checkout that the host refuses ends the walk, silently. Throws what the
// engine throws and MissingSuite when a colour cannot be read.
void UpdateParametersValues(PF_InData* in, PF_OutData* out, PF_ParamDef** params, bool forRender);

// Gives the engine one checked-out value. Does nothing until UpdateParametersUI has seen the parameter.
void UpdateParameterValue(AEGP_SuiteHandler& suites, PF_InData* in, PF_OutData* out, PF_ParamDef* def,
                          int hostIndex);

// Gives the host the engine's labels and enabled states; params may be null, then only the map is filled.
// Refusals of the host stay unreported.
void UpdateParametersUI(PF_InData* in, PF_OutData* out, PF_ParamDef** params);

} // namespace Adapter
