#include "tool/Variations.h"

#include <sstream>

#include "parameters/ParameterTraits.h"
#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

Variation ParseVariation(const std::string& text, const std::vector<Parameter>& parameters) {
    const auto [name, values] = SplitAssignment("--vary", text);
    const unsigned index = FindParameter("--vary", name, parameters);
    Variation variation{name, {}, {}};
    const bool bySemicolon =
        TraitsOf(parameters[index].type).isArray() || values.find(';') != std::string::npos;
    std::istringstream parts(values);
    for (std::string part; std::getline(parts, part, bySemicolon ? ';' : ',');) {
        variation.texts.push_back(Trimmed(part));
        variation.settings.push_back({index, ParseValue(variation.texts.back(), parameters[index])});
    }
    if (variation.texts.empty())
        throw WrongUse("--vary " + text + ": NAME=VALUE,VALUE,... expected");
    return variation;
}

} // namespace fxhost
