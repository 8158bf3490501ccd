#include "host/HostState.h"

namespace Adapter {

std::map<A_u_long, A_u_long> s_MapPlugin2AEParam;
std::map<A_u_long, A_u_long> s_MapAEParam2Plugin;
A_long s_ParamsStart = 0;
A_long s_PointsStart = 0;
A_long s_ColorsStart = 0;
A_long s_LayersStart = 0;
A_long s_Points2Start = 0;
A_long s_TextureStart = 0;
A_long s_PathsStart = 0;
A_long s_BoolsStart = 0;
A_long s_PopupsStart = 0;
A_long s_AngleStart = 0;
A_long s_HostParamCount = 0;
std::vector<A_u_long> s_arEnabled;
std::map<PF_Handle, void*> s_SequenceOfHandle;

bool HostHasParam(const PF_InData& in, A_long hostIndex) {
    const bool hostCounts = in.num_params > 0; // 0 before the parameters are published
    return hostIndex >= 0 && (!hostCounts || hostIndex < in.num_params);
}

bool FindHostIndex(const PF_InData& in, A_u_long engineIndex, A_long& hostIndex) {
    const auto found = s_MapPlugin2AEParam.find(engineIndex);
    if (found == s_MapPlugin2AEParam.end())
        return false;
    hostIndex = static_cast<A_long>(found->second);
    return HostHasParam(in, hostIndex) && hostIndex < s_HostParamCount;
}

} // namespace Adapter
