#include "tool/Completion.h"

#include <cstdio>
#include <sstream>

#include "tool/Commands.h"
#include "tool/Subcommands.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// All option names of a command, such as "-i --input".
std::string Words(const CLI::App& command) {
    std::string words;
    for (const CLI::Option* option : command.get_options()) {
        for (const auto& name : option->get_snames())
            words += "-" + name + " ";
        for (const auto& name : option->get_lnames())
            words += "--" + name + " ";
    }
    return words.substr(0, words.find_last_not_of(' ') + 1);
}

} // namespace

std::string BashCompletion(const CLI::App& tool) {
    std::ostringstream out;
    out << "_fxhost() {\n    local word=${COMP_WORDS[COMP_CWORD]} words=\n    case ${COMP_WORDS[1]} in\n";
    std::string names;
    for (const CLI::App* command : Subcommands(tool)) {
        names += command->get_name() + " ";
        out << "    " << command->get_name() << ") words='" << Words(*command) << "' ;;\n";
    }
    out << "    esac\n    [ \"$COMP_CWORD\" -eq 1 ] && words='" << names << Words(tool) << "'\n"
        << "    [[ $COMP_CWORD -eq 1 || $word == -* ]] && COMPREPLY=($(compgen -W \"$words\" -- "
           "\"$word\"))\n}\n"
        << "complete -o default -F _fxhost fxhost ./fxhost\n";
    return out.str();
}

Command AddCompletion(CLI::App& tool) {
    CLI::App* app = tool.add_subcommand("completion", "Print the completion script for bash");
    app->footer("Example:\n  source <(fxhost completion)");
    return {app, [&tool] {
                std::fputs(BashCompletion(tool).c_str(), stdout);
                return ExitOk;
            }};
}

} // namespace fxhost
