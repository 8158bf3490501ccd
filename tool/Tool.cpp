#include "tool/Tool.h"

#include <vector>

#include "guard/Memory.h"
#include "guard/ErrorReport.h"
#include "tool/Commands.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

using AddCommand = Command (*)(CLI::App&);
constexpr AddCommand s_Commands[] = {AddRender, AddInfo,  AddCheck, AddNew, AddPack,      AddUnpack,
                                     AddBundle, AddSheet, AddBench, AddMan, AddCompletion};

int RunChosen(const std::vector<Command>& commands) {
    for (const Command& command : commands)
        if (command.app->parsed())
            return command.run();
    return ExitWrongUse;
}

} // namespace

int RunTool(int argc, char** argv) {
    KeepFreedMemory();
    CLI::App tool("Runs shader effects from the command line.", "fxhost");
    tool.set_version_flag("--version", std::string("fxhost ") + FX_VERSION);
    tool.require_subcommand(1);
    tool.footer("Exit status: 0 done; 1 the effect failed; 2 wrong use; 4 the effect crashed or hung.\n"
                "`fxhost COMMAND --help` tells a command's options, with examples.");
    std::vector<Command> commands;
    for (const AddCommand add : s_Commands)
        commands.push_back(add(tool));
    try {
        tool.parse(argc, argv);
        return RunAndReport([&] { return RunChosen(commands); });
    } catch (const CLI::ParseError& error) {
        return tool.exit(error) == 0 ? ExitOk : ExitWrongUse;
    }
}

} // namespace fxhost
