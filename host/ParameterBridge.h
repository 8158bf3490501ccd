#pragma once

#include "host/CommandCall.h"
#include "host/Suites.h"

// Transfers parameter values and states between the host and the engine's current instance, using the maps of
// HostState.
namespace Adapter {

// Passes the host's value of every published parameter at in->current_time to the engine. Layers, textures
// and paths are included only when forRender is true. The first checkout that the host refuses ends the
// transfer without an error. Throws what the engine throws, and MissingSuite when a colour cannot be read.
void UpdateParametersValues(CommandCall& call, bool forRender);

// Passes one checked-out value to the engine. Does nothing before UpdateParametersUI has seen the parameter.
void UpdateParameterValue(CommandCall& call, AEGP_SuiteHandler& suites, PF_ParamDef& def, int hostIndex);

// Passes the engine's labels and enabled states to the host. When params is null, only the map from host to
// engine parameters is filled. A refusal by the host is not reported.
void UpdateParametersUI(CommandCall& call, PF_ParamDef** params);

} // namespace Adapter
