#include "tool/Completion.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "parameters/ParameterTraits.h"
#include "tool/Commands.h"
#include "tool/EngineSession.h"
#include "tool/Subcommands.h"
#include "toolkit/Errors.h"
#include "toolkit/ParameterValues.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

using Words = std::vector<std::string>;

// TOOL is replaced by the path of the tool.
constexpr char s_Bash[] = R"sh(_fxhost() {
    local words=() word suggestion
    for word in "${COMP_WORDS[@]:1:$COMP_CWORD}"; do # Bash separates words at "=", the tool does not
        if ((${#words[@]})) && [[ $word == "=" || ${words[${#words[@]} - 1]} == *= ]]; then
            words[${#words[@]} - 1]+=$word
        else
            words+=("$word")
        fi
    done
    local joined=${words[${#words[@]} - 1]%"${word#=}"}
    COMPREPLY=()
    while IFS= read -r suggestion; do
        COMPREPLY+=("$(printf %q "${suggestion#"$joined"}")")
    done < <('TOOL' __complete "${words[@]}" 2>/dev/null)
    [[ ${COMPREPLY[0]-} != *= ]] || compopt -o nospace 2>/dev/null
}
complete -o default -F _fxhost fxhost ./fxhost
)sh";
constexpr char s_Zsh[] = R"sh(#compdef fxhost
_fxhost() {
    local -a suggestions suffix
    suggestions=("${(@f)$('TOOL' __complete "${(@)words[2,CURRENT]}" 2>/dev/null)}")
    [[ $suggestions[1] != *= ]] || suffix=(-S '')
    if [[ -n "$suggestions" ]]; then compadd "${suffix[@]}" -a suggestions; else _files; fi
}
compdef _fxhost fxhost
)sh";
constexpr char s_Fish[] = R"sh(function __fxhost_suggestions
    set -l words (commandline -opc) (commandline -ct)
    set -l found ('TOOL' __complete $words[2..-1] 2>/dev/null)
    if test -n "$found"
        printf '%s\n' $found
    else
        __fish_complete_path (commandline -ct)
    end
end
complete -c fxhost -f -a '(__fxhost_suggestions)'
)sh";

Words OptionNames(const CLI::App& command) {
    Words names;
    for (const CLI::Option* option : command.get_options()) {
        for (const auto& name : option->get_snames())
            names.push_back("-" + name);
        for (const auto& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

// The parser appends the permitted values to the type: "BITS:{8,16,32}". Of pairs, as in "{ae->0}", the key
// counts.
Words PermittedValues(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const auto open = type.find('{'), close = type.find('}');
    if (open == std::string::npos || close == std::string::npos)
        return {};
    Words values = Split(type.substr(open + 1, close - open - 1), ',');
    for (std::string& value : values)
        value = value.substr(0, value.find("->"));
    return values;
}

// The parameters of the effect among the words; empty when there is none.
std::vector<Parameter> ParametersOf(const Words& words) {
    for (const std::string& word : words)
        if (std::filesystem::exists(std::filesystem::path(word) / "fx.js") || word.ends_with(".dat"))
            return EngineSession(word).driver().parameters();
    return {};
}

Words ValuesOf(const Parameter& parameter) {
    const ParameterTraits& traits = TraitsOf(parameter.type);
    return traits.hasChoices()                 ? Choices(parameter)
           : parameter.type == Parameter::BOOL ? Words{"on", "off"}
                                               : Words();
}

// "NAME=" for every parameter with a control, or "NAME=VALUE" once the name is there.
Words Assignments(const Words& words) {
    const std::string& typed = words.back();
    Words assignments;
    for (const Parameter& parameter : ParametersOf(words)) {
        if (!TraitsOf(parameter.type).hasControl() ||
            TraitsOf(parameter.type).content == ParameterTraits::Content::None)
            continue;
        if (!typed.starts_with(parameter.name + "="))
            assignments.push_back(parameter.name + "=");
        else
            for (const std::string& value : ValuesOf(parameter))
                assignments.push_back(parameter.name + "=" + value);
    }
    return assignments;
}

bool TakesParameter(const CLI::Option& option) {
    return option.check_lname("param") || option.check_lname("vary");
}

Words All(const CLI::App& tool, const Words& words) {
    Words names;
    if (words.size() < 2) {
        for (const CLI::App* command : Subcommands(tool))
            names.push_back(command->get_name());
        const Words options = OptionNames(tool);
        names.insert(names.end(), options.begin(), options.end());
        return names;
    }
    for (const CLI::App* command : Subcommands(tool)) {
        if (command->get_name() != words.front())
            continue;
        const CLI::Option* const option = command->get_option_no_throw(words[words.size() - 2]);
        if (option && words[words.size() - 2].starts_with('-') && option->get_type_size() > 0)
            return TakesParameter(*option) ? Assignments(words) : PermittedValues(*option);
        if (words.back().starts_with('-'))
            return OptionNames(*command);
    }
    return {};
}

} // namespace

std::string CompletionScript(const std::string& shell, const std::string& path) {
    std::string script = shell == "zsh" ? s_Zsh : shell == "fish" ? s_Fish : s_Bash;
    const std::string mark = "TOOL";
    return script.replace(script.find(mark), mark.size(), path);
}

std::vector<std::string> Suggestions(const CLI::App& tool, const std::vector<std::string>& words) {
    Words suggestions = words.empty() ? Words() : All(tool, words);
    std::erase_if(suggestions, [&](const std::string& name) { return !name.starts_with(words.back()); });
    return suggestions;
}

Command AddCompletion(CLI::App& tool) {
    const auto shell = std::make_shared<std::string>("bash");
    CLI::App* app = tool.add_subcommand("completion", "Print the completion script for a shell");
    app->add_option("SHELL", *shell, "bash, zsh or fish")
        ->check(CLI::IsMember({"bash", "zsh", "fish"}))
        ->capture_default_str();
    app->footer("Examples:\n  source <(fxhost completion)\n  fxhost completion zsh > ~/.zfunc/_fxhost\n"
                "  fxhost completion fish | source");
    return {app, [shell] {
                std::error_code error;
                const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
                std::fputs(CompletionScript(*shell, error ? "fxhost" : path.string()).c_str(), stdout);
                return ExitOk;
            }};
}

} // namespace fxhost
