#pragma once

#include <map>
#include <string>
#include <vector>

#include "sdk/HostApi.h"

namespace stricthost {

class HostCore;
class Instance;
class World;
struct FrameState;
struct SmartState;

// A time as commands give it: `value` units, `scale` of which make a second.
struct HostTime {
    A_long value;
    A_u_long scale;
};

// One command that the host sends to the plug-in. Its address is the effect_ref that the plug-in passes back,
// so every callback finds its command. Belongs to the thread that sends the command.
struct HostCall {
    HostCall(HostCore& core, PF_Cmd cmd, Instance* owner = nullptr);
    HostCall(const HostCall&) = delete;
    HostCall& operator=(const HostCall&) = delete;

    // The command that this thread is sending. Null, with a violation reported to every host, when there is
    // none: a plug-in may not call back on its own threads or between commands. what: the callback's name.
    static HostCall* Require(const char* what);
    // The same, and the plug-in must have passed the right effect_ref; null with a violation otherwise.
    static HostCall* From(PF_ProgPtr effect, const char* what);

    const char* Name() const;                   // of the command
    void Report(const std::string& what) const; // adds a violation, preceded by the command's name
    std::string Message() const;                // text that the plug-in left for the user; may be empty

    // Hands definitions with values over as params[], with a null pointer after the last one.
    void PassParams(std::vector<PF_ParamDef> defs);
    // Lets the plug-in read a handle of the host during this command, and no more. Null is allowed.
    void Protect(PF_Handle handle);
    // Time for which a definition was filled.
    HostTime TimeOf(const PF_ParamDef* def) const;
    // Index of the parameter that a definition was filled for; -1 when it is not one of this command's.
    A_long IndexOf(const PF_ParamDef* def) const;

    // A parameter that the plug-in checked out and has not checked in.
    struct Checkout {
        A_long index;
        World* world; // pixels of a layer, or null
        HostTime time;
    };

    HostCore& host;
    PF_Cmd command;
    Instance* instance; // null for commands that concern the whole plug-in
    PF_InData in = {};
    PF_OutData out = {};
    std::vector<PF_ParamDef> params;
    std::vector<PF_ParamDef*> paramPointers;
    std::map<const PF_ParamDef*, Checkout> checkouts;
    std::map<PF_Handle, int> locks;                  // balance of lock and unlock in this command
    std::map<PF_Handle, std::vector<char>> readOnly; // protected handles and their bytes
    bool flattens = false;                           // returns a copy in sequence_data
    A_long added = 0;                                // number of parameters added
    const FrameState* frame = nullptr;               // set for rendering commands
    SmartState* smart = nullptr;                     // set for smart pre-render and smart render
};

// Makes a command the current one of its thread for a scope.
class CurrentCall {
public:
    explicit CurrentCall(HostCall& call);
    ~CurrentCall();
    CurrentCall(const CurrentCall&) = delete;
    CurrentCall& operator=(const CurrentCall&) = delete;

private:
    HostCall* m_Before;
};

} // namespace stricthost
