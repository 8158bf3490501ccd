#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "stricthost/AegpObjects.h"
#include "stricthost/HandleStore.h"
#include "stricthost/LiveHosts.h"
#include "stricthost/Options.h"
#include "stricthost/ParamTable.h"
#include "stricthost/SuiteTable.h"
#include "stricthost/ViolationList.h"
#include "stricthost/WorldStore.h"

namespace stricthost {

struct HostCall;

// The state of the host for its plug-in. Only the set-up commands, which run alone, write the fields outside
// the stores; afterwards several threads may send commands.
class HostCore {
public:
    HostCore(PF_FilterProc entryPoint, Options hostOptions);
    HostCore(const HostCore&) = delete;
    HostCore& operator=(const HostCore&) = delete;

    // Sends a command and checks the state that the plug-in left behind. output and extra: as the command
    // defines them. Returns the plug-in's error; an exception becomes PF_Err_INVALID_CALLBACK and a
    // violation.
    PF_Err Send(HostCall& call, PF_LayerDef* output, void* extra);

    bool IsPremiere() const { return options.personality == Personality::Premiere; }
    bool Smart() const {
        return options.personality == Personality::AfterEffects &&
               (outFlags2 & PF_OutFlag2_SUPPORTS_SMART_RENDER) != 0;
    }

    PF_FilterProc entry;
    Options options;
    ViolationList violations;
    HandleStore handles;
    WorldStore worlds;
    SuiteTable suites;
    AegpObjects aegp;
    ParamTable params;
    std::vector<std::uint32_t> formats; // declared to Premiere Pro, in order of preference
    PF_Handle globalData = nullptr;
    A_u_long version = 0;
    PF_OutFlags outFlags = 0;
    PF_OutFlags2 outFlags2 = 0;

private:
    LiveHosts m_Registration{*this};

    void FillIn(HostCall& call);
    PF_Err Enter(HostCall& call, PF_LayerDef* output, void* extra);
    void CheckAfter(HostCall& call, void* contextBefore);
};

} // namespace stricthost
