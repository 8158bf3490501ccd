#include "tool/Tool.h"

#include <string>
#include <vector>

#include "guard/ErrorReport.h"
#include "platform/System.h"
#include "tool/Commands.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

using AddCommand = Command (*)(CLI::App&);
constexpr AddCommand s_Commands[] = {AddRender, AddInfo,  AddCheck, AddNew, AddPack,      AddUnpack,
                                     AddBundle, AddValidate, AddCompareTrace, AddSheet, AddBench, AddMan, AddCompletion};

std::string ExitStatusText() {
    std::string text = "Exit status:\n";
    for (const auto& [status, meaning] : ExitStatusTable) {
        const std::string number = std::to_string(status);
        text += "  " + number + std::string(5 - number.size(), ' ') + meaning + "\n";
    }
    return text + "\n";
}

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
    tool.footer(ExitStatusText() + "`fxhost COMMAND --help` lists the options of a command, with examples.");
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
