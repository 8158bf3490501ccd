#pragma once

#include <map>
#include <vector>

#include "sdk/HostApi.h"

// State that all instances of the effect share. It is written while parameters are published and while the
// parameter controls are updated, always under the global mutex.
namespace Adapter {

// Engine parameter index to host parameter index, and back.
extern std::map<A_u_long, A_u_long> s_MapPlugin2AEParam;
extern std::map<A_u_long, A_u_long> s_MapAEParam2Plugin;

// Host index of the first parameter of each kind. Each is written once, while it is still 0.
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

// Number of parameters that the host accepted, including the input layer. With a gap in the published
// indices, the highest index in the map is larger than this.
extern A_long s_HostParamCount;

// Host indices of colour parameters with an active colour picker. Nothing adds to it.
extern std::vector<A_u_long> s_arEnabled;

// The engine sequence that the record in each host handle owns.
extern std::map<PF_Handle, void*> s_SequenceOfHandle;

// False for a negative index and for one beyond in.num_params.
bool HostHasParam(const PF_InData& in, A_long hostIndex);

// Stores the host index of an engine parameter. Returns false when it has none, and for an index beyond the
// parameters that the host accepted.
bool FindHostIndex(const PF_InData& in, A_u_long engineIndex, A_long& hostIndex);

} // namespace Adapter
