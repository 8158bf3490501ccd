#include "check/ParameterChecks.h"

#include "packaging/ScriptScan.h"
#include "parameters/ParameterTraits.h"
#include "toolkit/ParameterValues.h"

namespace fxhost {

namespace {

constexpr std::size_t s_LongestLabel = 31; // bytes of a parameter's name that a host keeps

} // namespace

std::vector<Diagnostic> CheckParameters(const std::string& file, const std::string& script,
                                        const std::vector<Parameter>& parameters) {
    std::vector<Diagnostic> found;
    for (const Parameter& parameter : parameters) {
        const auto warn = [&](const std::string& text) {
            found.push_back({file, LineOfString(script, parameter.name), Severity::Warning, text, {}});
        };
        if (parameter.label.size() > s_LongestLabel)
            warn("label \"" + parameter.label + "\" is longer than the " + std::to_string(s_LongestLabel) +
                 " characters that hosts show");
        if (TraitsOf(parameter.type).hasChoices() && parameter.choiceCount == 0)
            warn("pop-up \"" + parameter.name + "\" has the one entry \"" + parameter.choices +
                 "\", which counts as none; give it two or more");
    }
    return found;
}

} // namespace fxhost
