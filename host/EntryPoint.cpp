#include "host/EntryPoint.h"

#include <algorithm>
#include <iterator>

#include "host/CommandGuard.h"
#include "host/Commands.h"
#include "utils/Utils.h"

namespace {

struct CommandRow {
    PF_Cmd code;
    PF_Err (*run)(Adapter::CommandCall& call);
};

// Commands that are not listed, such as global set-down, succeed without doing anything.
constexpr CommandRow s_Commands[] = {
    {PF_Cmd_ABOUT, Adapter::About},
    {PF_Cmd_GLOBAL_SETUP, Adapter::GlobalSetup},
    {PF_Cmd_PARAMS_SETUP, Adapter::ParamsSetup},
    {PF_Cmd_SEQUENCE_SETUP, Adapter::SequenceSetup},
    {PF_Cmd_SEQUENCE_RESETUP, Adapter::SequenceResetup},
    {PF_Cmd_SEQUENCE_FLATTEN, Adapter::SequenceFlatten},
    {PF_Cmd_SEQUENCE_SETDOWN, Adapter::SequenceSetdown},
    {PF_Cmd_FRAME_SETUP, Adapter::FrameSetup},
    {PF_Cmd_RENDER, Adapter::ClassicRender},
    {PF_Cmd_FRAME_SETDOWN, Adapter::FrameSetdown},
    {PF_Cmd_USER_CHANGED_PARAM, Adapter::UserChangedParam},
    {PF_Cmd_UPDATE_PARAMS_UI, Adapter::UpdateParamsUi},
    {PF_Cmd_EVENT, Adapter::Event},
    {PF_Cmd_SMART_PRE_RENDER, Adapter::SmartPreRender},
    {PF_Cmd_SMART_RENDER, Adapter::SmartRender},
};

const CommandRow* FindCommand(PF_Cmd code) {
    const auto* row = std::find_if(std::begin(s_Commands), std::end(s_Commands),
                                   [code](const CommandRow& candidate) { return candidate.code == code; });
    return row != std::end(s_Commands) ? row : nullptr;
}

PF_Err RunCommand(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output,
                  void* extra) {
    Adapter::CommandGuard guard;
    const CommandRow* row = FindCommand(cmd);
    if (!row)
        return PF_Err_NONE;
    if (!in || !out)
        return PF_Err_BAD_CALLBACK_PARAM;
    Adapter::CommandCall call{in, out, params, output, extra, guard, guard.Engine()};
    return row->run(call);
}

} // namespace

// No exception may reach the host, neither from a command nor from the guard or the engine's construction.
extern "C" PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra) {
    try {
        return RunCommand(cmd, in_data, out_data, params, output, extra);
    } catch (int err) {
        Utils::Log("An exception has been thrown! err = %d\n", err);
        return err;
    } catch (...) {
        Utils::Log("An exception has been thrown! Unknown error!\n");
        return PF_Err_INVALID_CALLBACK;
    }
}
