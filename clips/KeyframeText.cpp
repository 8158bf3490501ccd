#include "clips/KeyframeText.h"

#include <algorithm>
#include <optional>

#include "parameters/ParameterTraits.h"
#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

// Nothing when the text is not a time.
std::optional<double> KeyframeTime(const std::string& raw, const FrameRate& rate) {
    std::string text = Trimmed(raw);
    const bool inSeconds = text.ends_with('s');
    if (inSeconds)
        text.pop_back();
    const auto number = ParseNumber(text);
    if (!number)
        return std::nullopt;
    return inSeconds ? *number : rate.timeOf(*number);
}

bool StartsWithTime(const std::string& text) {
    const auto colon = text.find(':');
    return colon != std::string::npos && KeyframeTime(text.substr(0, colon), {});
}

// Appends each piece that does not start with a time to the piece before it: the comma is part of a value.
std::vector<std::string> JoinValues(const std::vector<std::string>& pieces) {
    std::vector<std::string> keyframes;
    for (const std::string& piece : pieces) {
        if (keyframes.empty() || StartsWithTime(piece))
            keyframes.push_back(piece);
        else
            keyframes.back() += "," + piece;
    }
    return keyframes;
}

// The texts of the single keyframes.
std::vector<std::string> SplitKeyframes(const std::string& text) {
    const bool hasSemicolon = text.find(';') != std::string::npos;
    std::vector<std::string> keyframes = hasSemicolon ? Split(text, ';') : JoinValues(Split(text, ','));
    if (keyframes.size() > 1 && Trimmed(keyframes.back()).empty()) // after a separator at the end
        keyframes.pop_back();
    return keyframes;
}

// True for the name of a pop-up entry, which may look like a keyframe: "16:9".
bool IsChoice(const std::string& text, const Parameter& parameter) {
    if (!TraitsOf(parameter.type).hasChoices())
        return false;
    const auto choices = Choices(parameter);
    return std::find(choices.begin(), choices.end(), text) != choices.end();
}

Keyframe ParseKeyframe(const std::string& text, const Parameter& parameter, const FrameRate& rate,
                       const std::string& where) {
    const auto colon = text.find(':');
    if (colon == std::string::npos)
        throw WrongUse(where + ": the keyframe \"" + Trimmed(text) + "\" has no time; expected TIME:VALUE");
    return {ParseKeyframeTime(text.substr(0, colon), rate, where),
            ParseValue(Trimmed(text.substr(colon + 1)), parameter)};
}

} // namespace

double ParseKeyframeTime(const std::string& text, const FrameRate& rate, const std::string& where) {
    const auto time = KeyframeTime(text, rate);
    if (!time)
        throw WrongUse(where + ": \"" + text +
                       "\" is not a time; expected frames, such as 12, or seconds, such as 0.5s");
    return *time;
}

void AddSetting(Animation& animation, const std::string& assignment, const std::vector<Parameter>& parameters,
                const FrameRate& rate) {
    const auto [name, text] = SplitAssignment("--param", assignment);
    const unsigned index = FindParameter("--param", name, parameters);
    const Parameter& parameter = parameters[index];
    if (!StartsWithTime(text) || IsChoice(text, parameter)) {
        animation.setConstant({index, ParseValue(text, parameter)});
        return;
    }
    const std::string where = "--param " + assignment;
    std::vector<Keyframe> keyframes;
    for (const std::string& keyframe : SplitKeyframes(text))
        keyframes.push_back(ParseKeyframe(keyframe, parameter, rate, where));
    animation.setAnimated(AnimatedParameter(index, parameter, std::move(keyframes), where));
}

} // namespace fxhost
