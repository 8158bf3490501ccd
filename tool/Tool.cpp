#include "tool/Tool.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "guard/ErrorReport.h"
#include "platform/System.h"
#include "tool/Commands.h"
#include "tool/Completion.h"
#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

using AddCommand = Command (*)(CLI::App&);
constexpr AddCommand s_Commands[] = {AddRender, AddInfo,   AddCheck,     AddNew,          AddPack,
                                     AddUnpack, AddBundle, AddValidate,  AddCompareTrace, AddSheet,
                                     AddBench,  AddMan,    AddCompletion};

std::string ExitStatusText() {
    std::string text = "Exit status:\n";
    for (const auto& [status, meaning] : ExitStatusTable) {
        const std::string number = std::to_string(status);
        text += "  " + number + std::string(5 - number.size(), ' ') + meaning + "\n";
    }
    return text + "\n";
}

// "did you mean" for a misspelt command; empty when the first argument is none.
std::string Suggestion(int argc, char** argv, const std::vector<Command>& commands) {
    std::vector<std::string> names;
    for (const Command& command : commands)
        names.push_back(command.app->get_name());
    const std::string word = argc > 1 ? argv[1] : "";
    const bool isKnown = std::find(names.begin(), names.end(), word) != names.end();
    const std::string closest = isKnown || word.starts_with('-') ? "" : ClosestWord(word, names);
    return closest.empty() ? "" : "There is no command \"" + word + "\"; did you mean " + closest + "?\n";
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
    if (argc > 1 && std::string(argv[1]) == CompletionArgument) {
        for (const std::string& word : Suggestions(tool, std::vector<std::string>(argv + 2, argv + argc)))
            std::printf("%s\n", word.c_str());
        return ExitOk;
    }
    try {
        tool.parse(argc, argv);
        return RunAndReport([&] { return RunChosen(commands); });
    } catch (const CLI::ParseError& error) {
        std::fputs(Suggestion(argc, argv, commands).c_str(), stderr);
        return tool.exit(error) == 0 ? ExitOk : ExitWrongUse;
    }
}

} // namespace fxhost
