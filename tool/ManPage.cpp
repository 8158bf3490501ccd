#include "tool/ManPage.h"

#include <cstdio>
#include <sstream>

#include "tool/Commands.h"
#include "tool/Subcommands.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// Escapes text for roff: backslashes, hyphens, and characters that would start a request.
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
    // The parser appends the permitted values: "BITS:{8,16,32}".
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

} // namespace

std::string ManPage(const CLI::App& tool) {
    std::ostringstream out;
    out << ".TH FXHOST 1\n.SH NAME\nfxhost \\- runs shader effects from the command line\n"
        << ".SH SYNOPSIS\n\\fBfxhost\\fR \\fICOMMAND\\fR [\\fIOPTIONS\\fR] ...\n.SH COMMANDS\n";
    for (const CLI::App* command : Subcommands(tool))
        PutCommand(out, *command);
    out << ".SH EXIT STATUS\n";
    for (const auto& [status, meaning] : ExitStatusTable)
        out << ".TP\n" << status << "\n" << ForMan(meaning) << "\n";
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

} // namespace fxhost
