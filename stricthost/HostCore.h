#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "stricthost/AegpObjects.h"
#include "stricthost/HandleStore.h"
#include "stricthost/Options.h"
#include "stricthost/ParamTable.h"
#include "stricthost/SuiteTable.h"
#include "stricthost/ViolationList.h"
#include "stricthost/WorldStore.h"

namespace stricthost {

struct Call;

// What the host knows about one plug-in. Everything but the stores is written by the set-up commands alone,
// which run alone; after them several threads may send commands.
class HostCore {
public:
    HostCore(PF_FilterProc entryPoint, Options hostOptions);
    ~HostCore();
    HostCore(const HostCore&) = delete;
    HostCore& operator=(const HostCore&) = delete;

    // Sends a command and checks what the plug-in left behind. output and extra as the command has them;
    // call.params is handed over where hosts do so.
    PF_Err Send(Call& call, PF_LayerDef* output, void* extra);

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
    std::vector<std::uint32_t> formats; // that the plug-in gave to Premiere Pro, in order of preference
    PF_Handle globalData = nullptr;
    A_u_long version = 0;
    PF_OutFlags outFlags = 0;
    PF_OutFlags2 outFlags2 = 0;

private:
    void FillIn(Call& call);
    PF_Err Enter(Call& call, PF_LayerDef* output, void* extra);
    void CheckAfter(Call& call, void* contextBefore);
};

} // namespace stricthost
