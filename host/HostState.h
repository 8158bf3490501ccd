#pragma once

#include <map>
#include <vector>

#include "AE_Effect.h"

// What all instances of the effect share. Written while parameters are published and while the parameter UI
// is updated, always under the global mutex.
namespace Adapter {

// Engine parameter index to host parameter index, and back.
extern std::map<A_u_long, A_u_long> s_MapPlugin2AEParam;
extern std::map<A_u_long, A_u_long> s_MapAEParam2Plugin;

// Host index of the first parameter of each kind; each is written once, while it is still 0.
extern A_long s_ParamsStart; // floats
extern A_long s_PointsStart; // 3-D points
extern A_long s_ColorsStart;
extern A_long s_LayersStart;
extern A_long s_Points2Start; // 2-D points
extern A_long s_TextureStart;
extern A_long s_PathsStart;
extern A_long s_BoolsStart;
extern A_long s_PopupsStart;
extern A_long s_AngleStart;

// Parameters that the host took, the input layer included. A gap in the published indices makes the highest
// index in the map larger than this.
extern A_long s_HostParamCount;

// Host indices of colour parameters with an active colour picker. Nothing adds to it yet.
extern std::vector<A_u_long> s_arEnabled;

// False for an index past the parameters that the host speaks of.
bool HostHasParam(const PF_InData& in, A_long hostIndex);

// Host index of an engine parameter. False without one, and for one past the parameters that the host took.
bool FindHostIndex(const PF_InData& in, A_u_long engineIndex, A_long& hostIndex);

} // namespace Adapter
