#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "AEGP_SuiteHandler.h"
#include "AE_Effect.h"
#include "AE_EffectCB.h"
#include "standalone/stricthost/StrictHost.h"

// What the stand-in entry point sees of a command.
struct Command {
    PF_Cmd code;
    PF_InData* in;
    PF_OutData* out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;
};

// A small plug-in that inverts its input and keeps to every rule. A test replaces or extends what it does on
// a command. One at a time.
class StandIn {
public:
    StandIn();
    ~StandIn();
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    static PF_Err Entry(PF_Cmd code, PF_InData* in, PF_OutData* out, PF_ParamList params, PF_LayerDef* output,
                        void* extra);

    std::map<PF_Cmd, std::function<PF_Err(Command&)>> instead;
    std::map<PF_Cmd, std::function<void(Command&)>> before; // then as usual
    std::map<PF_Cmd, std::function<void(Command&)>> after;
    std::function<PF_Err(Command&)> addParams; // a slider, unless replaced
    std::string log;                           // a letter for every command; see LetterOf
    PF_OutFlags flags = PF_OutFlag_CUSTOM_UI | PF_OutFlag_DEEP_COLOR_AWARE;
    PF_OutFlags2 flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
    std::vector<std::uint32_t> formats; // declared to Premiere Pro

private:
    PF_Err Run(Command& command);
    std::mutex m_Mutex;
};

// A zeroed definition of a kind, with a label.
PF_ParamDef MakeParam(PF_ParamType type, const char* label);
PF_Err AddParam(Command& command, PF_ParamDef def);
const PF_HandleSuite1& Handles(Command& command);
// Acquires a suite; null when the host lacks it.
const void* Acquire(Command& command, const char* name, int number);
void Release(Command& command, const char* name, int number);
// Writes 255 - v (or white - v) over the whole output.
void Invert(const PF_LayerDef& input, const PF_LayerDef& output, int bits);

fxhost::Picture Gradient(unsigned width, unsigned height, unsigned depth = 8);
fxhost::Picture Inverted(const fxhost::Picture& picture);

// Sets up a host for the stand-in, up to the parameters.
std::unique_ptr<stricthost::StrictHost> SetUpHost(stricthost::Options options = {});
