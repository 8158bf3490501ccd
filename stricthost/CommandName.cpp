#include "stricthost/CommandName.h"

namespace stricthost {

namespace {

struct CommandRow {
    PF_Cmd code;
    const char* name;
};
constexpr CommandRow s_Commands[] = {
    {PF_Cmd_ABOUT, "ABOUT"},
    {PF_Cmd_GLOBAL_SETUP, "GLOBAL_SETUP"},
    {PF_Cmd_GLOBAL_SETDOWN, "GLOBAL_SETDOWN"},
    {PF_Cmd_PARAMS_SETUP, "PARAMS_SETUP"},
    {PF_Cmd_SEQUENCE_SETUP, "SEQUENCE_SETUP"},
    {PF_Cmd_SEQUENCE_RESETUP, "SEQUENCE_RESETUP"},
    {PF_Cmd_SEQUENCE_FLATTEN, "SEQUENCE_FLATTEN"},
    {PF_Cmd_SEQUENCE_SETDOWN, "SEQUENCE_SETDOWN"},
    {PF_Cmd_FRAME_SETUP, "FRAME_SETUP"},
    {PF_Cmd_RENDER, "RENDER"},
    {PF_Cmd_FRAME_SETDOWN, "FRAME_SETDOWN"},
    {PF_Cmd_USER_CHANGED_PARAM, "USER_CHANGED_PARAM"},
    {PF_Cmd_UPDATE_PARAMS_UI, "UPDATE_PARAMS_UI"},
    {PF_Cmd_SMART_PRE_RENDER, "SMART_PRE_RENDER"},
    {PF_Cmd_SMART_RENDER, "SMART_RENDER"},
    {PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, "GET_FLATTENED_SEQUENCE_DATA"},
};

} // namespace

const char* CommandName(PF_Cmd command) {
    for (const CommandRow& row : s_Commands)
        if (row.code == command)
            return row.name;
    return "a command";
}

} // namespace stricthost
