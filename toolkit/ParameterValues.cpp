#include "toolkit/ParameterValues.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <optional>
#include <regex>

#include "parameters/ParameterTraits.h"
#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

using Control = ParameterTraits::Control;

// How many numbers a value needs and what it looks like. An alpha that is left out is 1.
struct ValueSyntax {
    Control control;
    unsigned atLeast;
    unsigned atMost;
    const char* shape;
};
constexpr ValueSyntax s_Syntaxes[] = {
    {Control::Slider, 1, 1, "one number"},
    {Control::Point3D, 3, 3, "three numbers: x,y,z"},
    {Control::Color, 3, 4,
     "#rrggbb, or three or four numbers from 0 to 1: red,green,blue or red,green,blue,alpha"},
    {Control::Point2D, 2, 2, "two numbers in pixels, x,y, or percent of the layer, x%,y%"},
    {Control::CheckBox, 0, 0, "on or off"},
    {Control::Angle, 1, 1, "one number, in degrees"},
};

const ValueSyntax& SyntaxOf(const Parameter& parameter) {
    const Control control = TraitsOf(parameter.type).control;
    return *std::find_if(std::begin(s_Syntaxes), std::prev(std::end(s_Syntaxes)),
                         [&](const ValueSyntax& syntax) { return syntax.control == control; });
}

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string ShownName(const Parameter& parameter) {
    return parameter.name.empty() ? parameter.label : parameter.name;
}

[[noreturn]] void Refuse(const Parameter& parameter, const std::string& text, const std::string& expected) {
    const auto blank = Trimmed(text).find(' ');
    const bool isKeyframe = blank != std::string::npos && text.find(':', blank) != std::string::npos;
    throw WrongUse("parameter " + Quoted(ShownName(parameter)) + " (" + TraitsOf(parameter.type).name +
                   "): " + Quoted(text) + " given, " + expected + " expected" +
                   (isKeyframe ? "; keyframes are separated by commas, such as 0:1, 1s:4" : ""));
}

std::string Text(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.7g", number);
    return text;
}

// "#rrggbb" or "#rrggbbaa"; nothing for other texts.
std::optional<Parameter::Value> ParseHexColour(const std::string& text) {
    const std::string digits = Trimmed(text);
    const bool isHex =
        digits.starts_with('#') && digits.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
    if (!isHex || (digits.size() != 7 && digits.size() != 9))
        return std::nullopt;
    Parameter::Value value;
    value.SetFloat(3, 1);
    for (unsigned i = 0; 1 + 2 * i < digits.size(); ++i)
        value.SetFloat(i, static_cast<float>(std::stoi(digits.substr(1 + 2 * i, 2), nullptr, 16)) / 255.0f);
    return value;
}

Parameter::Value ParseNumbers(const std::string& text, const Parameter& parameter) {
    const ValueSyntax& row = SyntaxOf(parameter);
    if (const auto colour = parameter.type == Parameter::COLOR ? ParseHexColour(text) : std::nullopt)
        return *colour;
    const auto parts = Split(text, ',');
    if (parts.size() < row.atLeast || parts.size() > row.atMost)
        Refuse(parameter, text, row.shape);
    Parameter::Value value;
    if (parameter.type == Parameter::COLOR)
        value.SetFloat(3, 1);
    for (unsigned i = 0; i < parts.size(); ++i) {
        const auto number = ParseNumber(parts[i]);
        if (!number)
            Refuse(parameter, text, row.shape);
        value.SetFloat(i, static_cast<float>(*number));
    }
    const float low = parameter.min.Float(0), high = parameter.max.Float(0), x = value.Float(0);
    if (parameter.type == Parameter::FLOAT && (x < low || x > high))
        Refuse(parameter, text, "a number from " + Text(low) + " to " + Text(high));
    return value;
}

Parameter::Value ParseSwitch(const std::string& text, const Parameter& parameter) {
    constexpr const char* on[] = {"on", "true", "1"};
    constexpr const char* off[] = {"off", "false", "0"};
    const auto among = [&](const auto& words) {
        return std::any_of(std::begin(words), std::end(words),
                           [&](const char* word) { return text == word; });
    };
    if (!among(on) && !among(off))
        Refuse(parameter, text, SyntaxOf(parameter).shape);
    Parameter::Value value;
    value.SetInt(0, among(on) ? 1 : 0);
    return value;
}

// The text of an entry takes precedence over its number, so that entries such as "4" can be selected by text.
Parameter::Value ParseChoice(const std::string& text, const Parameter& parameter) {
    const auto choices = Choices(parameter);
    const auto entry = std::find(choices.begin(), choices.end(), text);
    Parameter::Value value;
    if (entry != choices.end()) {
        value.SetInt(0, static_cast<int>(entry - choices.begin()) + 1);
        return value;
    }
    const auto number = ParseNumber(text);
    if (!number || *number != std::floor(*number) || *number < 1 ||
        *number > static_cast<double>(choices.size())) {
        std::string list;
        for (const auto& choice : choices)
            list += (list.empty() ? "" : ", ") + Quoted(choice);
        Refuse(parameter, text,
               "a number from 1 to " + std::to_string(choices.size()) + " or one of " + list);
    }
    value.SetInt(0, static_cast<int>(*number));
    return value;
}

bool IsShown(const Parameter& parameter) {
    const bool isValue = TraitsOf(parameter.type).content != ParameterTraits::Content::None;
    return isValue && !(parameter.flags & Parameter::NotPublished);
}

} // namespace

NamedText SplitAssignment(const std::string& option, const std::string& assignment) {
    const auto equals = assignment.find('=');
    if (equals == std::string::npos)
        throw WrongUse(option + " " + assignment + ": NAME=VALUE expected");
    return {assignment.substr(0, equals), assignment.substr(equals + 1)};
}

unsigned FindParameter(const std::string& option, const std::string& name,
                       const std::vector<Parameter>& parameters) {
    for (const auto field : {&Parameter::name, &Parameter::label})
        for (unsigned i = 0; i < parameters.size(); ++i)
            if (IsShown(parameters[i]) && !name.empty() && parameters[i].*field == name)
                return i;
    std::string known;
    for (const auto& parameter : parameters)
        if (IsShown(parameter))
            known += (known.empty() ? "" : ", ") + ShownName(parameter);
    throw WrongUse(option + ": the effect has no parameter " + Quoted(name) +
                   (known.empty() ? "; it has none at all" : "; it has " + known));
}

ParameterSetting ParseSetting(const std::string& assignment, const std::vector<Parameter>& parameters) {
    const auto [name, text] = SplitAssignment("--param", assignment);
    const unsigned index = FindParameter("--param", name, parameters);
    return {index, ParseValue(text, parameters[index])};
}

std::string PercentToPixels(const std::string& assignment, const std::vector<Parameter>& parameters,
                            unsigned width, unsigned height) {
    static const std::regex s_Percent(R"((-?[0-9.]+)%)");
    const auto [name, text] = SplitAssignment("--param", assignment);
    if (!TraitsOf(parameters[FindParameter("--param", name, parameters)].type).isArray())
        return assignment;
    std::string result = name + "=";
    std::size_t done = 0;
    for (std::sregex_iterator at(text.begin(), text.end(), s_Percent), end; at != end; ++at) {
        const auto begin = static_cast<std::size_t>(at->position());
        const auto value = text.find_last_of(":;", begin);
        const auto from = text.begin() + static_cast<std::ptrdiff_t>(value == std::string::npos ? 0 : value);
        const auto component = std::count(from, text.begin() + at->position(), ',');
        const double extent = component == 0 ? width : height;
        result += text.substr(done, begin - done) + Text(ParseNumber(at->str(1)).value_or(0) * extent / 100);
        done = begin + static_cast<std::size_t>(at->length());
    }
    return result + text.substr(done);
}

Parameter::Value ParseValue(const std::string& text, const Parameter& parameter) {
    const ParameterTraits& traits = TraitsOf(parameter.type);
    if (traits.isFloat())
        return ParseNumbers(text, parameter);
    if (traits.hasChoices())
        return ParseChoice(text, parameter);
    if (traits.isInteger())
        return ParseSwitch(text, parameter);
    if (traits.isTexture())
        throw WrongUse("parameter " + Quoted(ShownName(parameter)) +
                       " is a layer: give its picture with --layer " + ShownName(parameter) + "=IMAGE");
    throw WrongUse("parameter " + Quoted(ShownName(parameter)) + " is a " + TraitsOf(parameter.type).name +
                   " and takes no value");
}

std::vector<std::string> Choices(const Parameter& parameter) {
    return Split(parameter.choices, '|');
}

std::vector<double> HostDefault(const Parameter& parameter) {
    const auto number = [&](unsigned index) { return static_cast<double>(parameter.value.Float(index)); };
    // The low byte of the truncated number.
    const auto byte = [&](unsigned index) {
        return static_cast<double>(static_cast<std::uint8_t>(static_cast<std::int64_t>(number(index)))) / 255;
    };
    // A fixed-point number shifted up once more than it should be, in 32 bits.
    const auto percent = [&](unsigned index) {
        const double rounded = number(index) * 65536 + (number(index) < 0 ? -0.5 : 0.5);
        return static_cast<double>(static_cast<std::int16_t>(static_cast<std::int64_t>(rounded)));
    };
    switch (parameter.type) {
    case Parameter::FLOAT:
    case Parameter::ANGLE:
        return {number(0)};
    case Parameter::POINT2D:
        return {percent(0), percent(1)};
    case Parameter::POINT:
        return {number(0), number(1), number(1)};
    case Parameter::COLOR:
        return {byte(0), byte(1), byte(2), byte(3)};
    default:
        return {};
    }
}

std::string DefaultText(const Parameter& parameter) {
    const ParameterTraits& traits = TraitsOf(parameter.type);
    if (traits.hasChoices())
        return std::to_string(parameter.value.Int(0));
    if (traits.isInteger())
        return parameter.value.Int(0) ? "on" : "off";
    std::string text;
    for (const double number : HostDefault(parameter))
        text += (text.empty() ? "" : ",") + Text(number) + (parameter.type == Parameter::POINT2D ? "%" : "");
    return text;
}

} // namespace fxhost
