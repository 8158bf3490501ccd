#include "tool/Reference.h"

#include <cstdio>
#include <sstream>

#include "tool/Commands.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

std::vector<const CLI::App*> Subcommands(const CLI::App& tool) {
    return tool.get_subcommands([](const CLI::App*) { return true; });
}

// Text as man takes it: no line may start as a request, and backslashes and hyphens stand for themselves.
std::string ForMan(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else if ((c == '.' || c == '\'') && (escaped.empty() || escaped.back() == '\n'))
            escaped += std::string("\\&") + c;
        else
            escaped += c;
    }
    return escaped;
}

void PutOption(std::ostream& out, const CLI::Option& option) {
    out << ".TP\n\\fB" << ForMan(option.get_name(option.get_positional(), true)) << "\\fR";
    // The parser appends what a value is checked against: "BITS:{8,16,32}".
    const std::string type = option.get_type_name().substr(0, option.get_type_name().find(':'));
    if (option.get_type_size() > 0 && !option.get_positional() && !type.empty())
        out << " \\fI" << ForMan(type) << "\\fR";
    out << "\n" << ForMan(option.get_description()) << (option.get_required() ? " (required)" : "") << "\n";
}

void PutCommand(std::ostream& out, const CLI::App& command) {
    out << ".SS " << ForMan(command.get_name()) << "\n" << ForMan(command.get_description()) << ".\n";
    for (const CLI::Option* option : command.get_options())
        PutOption(out, *option);
    if (const auto footer = command.get_footer(); !footer.empty())
        out << ".PP\n.nf\n" << ForMan(footer) << "\n.fi\n";
}

// "-i" and "--input", each a word.
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

std::string ManPage(const CLI::App& tool) {
    std::ostringstream out;
    out << ".TH FXHOST 1\n.SH NAME\nfxhost \\- runs shader effects from the command line\n"
        << ".SH SYNOPSIS\n\\fBfxhost\\fR \\fICOMMAND\\fR [\\fIOPTIONS\\fR] ...\n.SH COMMANDS\n";
    for (const CLI::App* command : Subcommands(tool))
        PutCommand(out, *command);
    out << ".SH EXIT STATUS\n" << ForMan(tool.get_footer()) << "\n";
    return out.str();
}

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

Command AddMan(CLI::App& tool) {
    CLI::App* app = tool.add_subcommand("man", "Print the manual page");
    app->footer("Example:\n  fxhost man | man -l -");
    return {app, [&tool] {
                std::fputs(ManPage(tool).c_str(), stdout);
                return ExitOk;
            }};
}

Command AddCompletion(CLI::App& tool) {
    CLI::App* app = tool.add_subcommand("completion", "Print what makes bash complete command lines");
    app->footer("Example:\n  source <(fxhost completion)");
    return {app, [&tool] {
                std::fputs(BashCompletion(tool).c_str(), stdout);
                return ExitOk;
            }};
}

} // namespace fxhost
