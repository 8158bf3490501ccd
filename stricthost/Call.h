#pragma once

#include <map>
#include <string>
#include <vector>

#include "AE_Effect.h"

namespace stricthost {

class HostCore;
class Instance;
class World;
struct FrameState;
struct SmartState;

// One command under way. Its address is the effect_ref that the plug-in gets, and every callback finds it
// again. Belongs to the thread that sends the command.
struct Call {
    Call(HostCore& core, PF_Cmd cmd, Instance* owner = nullptr);
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    // The command under way on this thread. Null, and a report to every host, when there is none: a plug-in
    // may not call back on threads of its own or between commands. what: the callback's name.
    static Call* Require(const char* what);
    // The same, and the plug-in must have passed the right effect_ref.
    static Call* From(PF_ProgPtr effect, const char* what);

    const char* Name() const; // of the command
    void Report(const std::string& what) const;
    // What the plug-in wrote into out.return_msg, for the user to read; empty when it wrote nothing.
    std::string Message() const;

    // The definitions handed over as params[], with values. Adds the null at the end.
    void PassParams(std::vector<PF_ParamDef> defs);
    // The index of the parameter that a definition was filled for, or -1.
    A_long IndexOf(const PF_ParamDef* def) const;

    struct Checkout {
        A_long index;
        World* world; // a layer's picture, or null
    };

    HostCore& host;
    PF_Cmd command;
    Instance* instance; // null for commands of the whole plug-in
    PF_InData in = {};
    PF_OutData out = {};
    std::vector<PF_ParamDef> params;
    std::vector<PF_ParamDef*> paramPointers;
    std::map<const PF_ParamDef*, Checkout> checkouts; // not yet checked in
    std::map<PF_Handle, int> locks;                   // of this command, still open
    A_long added = 0;                                 // parameters
    const FrameState* frame = nullptr;                // of the rendering commands
    SmartState* smart = nullptr;                      // of smart pre-render and smart render
};

const char* CommandName(PF_Cmd command);

// The command under way on this thread, for a scope.
class CurrentCall {
public:
    explicit CurrentCall(Call& call);
    ~CurrentCall();
    CurrentCall(const CurrentCall&) = delete;
    CurrentCall& operator=(const CurrentCall&) = delete;

private:
    Call* m_Before;
};

// The hosts of this process hear of callbacks that belong to no command.
void EnterLiveHosts(HostCore& host);
void LeaveLiveHosts(HostCore& host);

// The callbacks, ready for PF_InData.
PF_InteractCallbacks InteractTable();
struct _PF_UtilCallbacks* UtilTable();

} // namespace stricthost
