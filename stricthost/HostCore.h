#pragma once

#include <atomic>
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

    // Layout of the host's worlds, sizes in pixels.
    WorldShape Shape(A_long width, A_long height, std::uint32_t format) const;
    // Counts a callback of a frame command; true when the user interrupts the frame (Options::interruptAt).
    bool Interrupted(const HostCall& call);
    // Restarts that count for a new frame.
    void StartFrame() { m_FrameCallbacks = 0; }
    unsigned FrameCallbacks() const { return m_FrameCallbacks; }
    // True when the plug-in's sequence data may be copied as bytes under the quirk "byte-copies".
    bool CopiesBytes() const {
        return options.quirks.byteCopies && (outFlags & PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING) == 0;
    }

    // True when rendering commands carry no sequence data, as After Effects threads its renders.
    bool WithholdsData() const {
        return options.quirks.nullRenderData && !IsPremiere() &&
               (outFlags2 & PF_OutFlag2_SUPPORTS_THREADED_RENDERING) != 0;
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
    std::atomic<unsigned> m_FrameCallbacks{0};

    void FillIn(HostCall& call);
    PF_Err Enter(HostCall& call, PF_LayerDef* output, void* extra);
    void CheckAfter(HostCall& call, void* contextBefore);
};

} // namespace stricthost
