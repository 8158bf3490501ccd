#include "check/ParameterChecks.h"

#include <algorithm>
#include <cmath>

#include "packaging/ScriptScan.h"
#include "parameters/ParameterTraits.h"
#include "toolkit/ParameterValues.h"

namespace fxhost {

namespace {

constexpr std::size_t s_LongestLabel = 31;       // bytes of a parameter's name that a host keeps
constexpr float s_LargestPoint = 400.0f / 65536; // a default four layers away; larger ones are no percentages
constexpr float s_LargestPercent = 400;

using Texts = std::vector<std::string>;
using Control = ParameterTraits::Control;

bool IsFractional(float number) {
    return number != std::floor(number);
}

std::string Number(float number) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", static_cast<double>(number));
    return text;
}

void CheckSlider(const Parameter& parameter, Texts& problems) {
    const float low = parameter.min.Float(0), high = parameter.max.Float(0), value = parameter.value.Float(0);
    if (!(low < high))
        problems.push_back("the range is " + Number(low) + " to " + Number(high) +
                           "; the minimum must be less than the maximum");
    else if (!(value >= low && value <= high))
        problems.push_back("the default " + Number(value) + " is outside the range " + Number(low) + " to " +
                           Number(high));
    else if (high - low <= 1 && parameter.flags >> Parameter::PrecisionShift == 0)
        problems.push_back("the slider shows no decimals, so users can select only " + Number(low) + " and " +
                           Number(high) +
                           "; call SV_setParamPrecision after SV_setParamFlags, which resets it");
}

void CheckColour(const Parameter& parameter, Texts& problems) {
    float most = 0;
    bool fractional = false;
    for (unsigned i = 0; i < 4; ++i) {
        most = std::max(most, parameter.value.Float(i));
        fractional |= IsFractional(parameter.value.Float(i));
    }
    if (most > 0 && most <= 1)
        problems.push_back("the default colour looks like numbers from 0 to 1; defaults are bytes, such as "
                           "[255, 128, 0, 255]");
    else if (most > 255)
        problems.push_back("the default colour has a component above 255; defaults are bytes");
}

void CheckPoint2D(const Parameter& parameter, Texts& problems) {
    if (std::max(std::abs(parameter.value.Float(0)), std::abs(parameter.value.Float(1))) > s_LargestPoint)
        problems.push_back(
            "the default point looks like pixels or fractions; its unit is percent of the layer divided by "
            "65536, so [50 / 65536, 50 / 65536] is the middle");
}

void CheckPoint3D(const Parameter& parameter, Texts& problems) {
    const float x = std::abs(parameter.value.Float(0)), y = std::abs(parameter.value.Float(1));
    const bool isFraction = std::max(x, y) <= 1 && (IsFractional(x) || IsFractional(y));
    if (isFraction || std::max(x, y) > s_LargestPercent)
        problems.push_back("the default point looks like pixels or fractions; its unit is percent of the "
                           "layer, so [50, 50, 0] "
                           "is the middle");
}

void CheckPopup(const Parameter& parameter, Texts& problems) {
    const auto choices = Choices(parameter);
    if (parameter.choices == Parameter().choices)
        problems.push_back("the pop-up has only the default entries; call SV_setParamChoices");
    else if (parameter.choiceCount == 0)
        problems.push_back("pop-up \"" + parameter.name + "\" has the one entry \"" + parameter.choices +
                           "\", which counts as none; give it two or more");
    else if (std::find(choices.begin(), choices.end(), "") != choices.end())
        problems.push_back("the pop-up has an empty entry");
    if (const int value = parameter.value.Int(0);
        parameter.type == Parameter::POPUP && parameter.choiceCount > 0 &&
        (value < 1 || value > static_cast<int>(parameter.choiceCount)))
        problems.push_back("the default " + std::to_string(value) +
                           " is not the number of an entry; they count from 1 to " +
                           std::to_string(parameter.choiceCount));
}

Texts Problems(const Parameter& parameter) {
    Texts problems;
    if (parameter.label.size() > s_LongestLabel)
        problems.push_back("label \"" + parameter.label + "\" is longer than the " +
                           std::to_string(s_LongestLabel) + " characters that hosts show");
    switch (TraitsOf(parameter.type).control) {
    case Control::Slider:
        CheckSlider(parameter, problems);
        break;
    case Control::Color:
        CheckColour(parameter, problems);
        break;
    case Control::Point2D:
        CheckPoint2D(parameter, problems);
        break;
    case Control::Point3D:
        CheckPoint3D(parameter, problems);
        break;
    case Control::Popup:
        CheckPopup(parameter, problems);
        break;
    default:
        break;
    }
    return problems;
}

bool HasValue(const Parameter& parameter) {
    return TraitsOf(parameter.type).content != ParameterTraits::Content::None;
}

} // namespace

std::vector<Diagnostic> CheckParameters(const std::string& file, const std::string& script,
                                        const std::vector<Parameter>& parameters) {
    std::vector<Diagnostic> found;
    for (auto parameter = parameters.begin(); parameter != parameters.end(); ++parameter) {
        const int line = LineOfString(script, parameter->name);
        const auto warn = [&](const std::string& text) {
            found.push_back({file, line, Severity::Warning, text, {}});
        };
        for (const std::string& problem : Problems(*parameter))
            warn("parameter \"" + parameter->name + "\": " + problem);
        const bool isRepeated = std::any_of(parameters.begin(), parameter, [&](const Parameter& other) {
            return HasValue(other) && other.name == parameter->name;
        });
        if (isRepeated && HasValue(*parameter))
            warn("two parameters have the name \"" + parameter->name +
                 "\"; uniforms receive only one of them");
    }
    return found;
}

} // namespace fxhost
