#include "clips/Keys.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "clips/KeysInternal.h"
#include "parameters/ParameterTraits.h"
#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

constexpr unsigned s_Words = 4; // of a parameter's value

// Seconds for "12" and "0.5s"; nothing when the text is no time.
std::optional<double> KeyTime(const std::string& raw, const FrameRate& rate) {
    std::string text = Trimmed(raw);
    const bool seconds = text.ends_with('s');
    if (seconds)
        text.pop_back();
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || !std::isfinite(number))
        return std::nullopt;
    return seconds ? number : rate.timeOf(number);
}

bool BeginsWithTime(const std::string& text) {
    const auto colon = text.find(':');
    return colon != std::string::npos && KeyTime(text.substr(0, colon), {});
}

// The texts of the keys: cut at ";" when there is one, else before each piece that begins with a time.
std::vector<std::string> SplitKeys(const std::string& text) {
    const bool semicolons = text.find(';') != std::string::npos;
    const char separator = semicolons ? ';' : ',';
    std::vector<std::string> keys;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        const std::string piece = text.substr(begin, end - begin);
        if (keys.empty() || semicolons || BeginsWithTime(piece))
            keys.push_back(piece);
        else
            keys.back() += "," + piece;
        begin = end + 1;
    }
    if (keys.size() > 1 && Trimmed(keys.back()).empty()) // a separator at the end
        keys.pop_back();
    return keys;
}

// A pop-up's entry may look like a key: "16:9".
bool IsEntry(const std::string& text, const Parameter& parameter) {
    if (!TraitsOf(parameter.type).hasChoices())
        return false;
    const auto choices = Choices(parameter);
    return std::find(choices.begin(), choices.end(), text) != choices.end();
}

Parameter::Value Between(const KeyedParameter::Key& from, const KeyedParameter::Key& to, double time) {
    const double share = (time - from.time) / (to.time - from.time);
    Parameter::Value value;
    for (unsigned i = 0; i < s_Words; ++i) {
        const double a = from.value.Float(i), b = to.value.Float(i);
        value.SetFloat(i, static_cast<float>(a + (b - a) * share));
    }
    return value;
}

} // namespace

KeyedParameter::KeyedParameter(unsigned index, const Parameter& parameter, std::vector<Key> keys,
                               const std::string& where)
    : m_Index(index), m_Linear(TraitsOf(parameter.type).isInterpolated()), m_Keys(std::move(keys)) {
    std::stable_sort(m_Keys.begin(), m_Keys.end(),
                     [](const Key& a, const Key& b) { return a.time < b.time; });
    const auto twin = std::adjacent_find(m_Keys.begin(), m_Keys.end(),
                                         [](const Key& a, const Key& b) { return a.time == b.time; });
    if (twin != m_Keys.end())
        throw WrongUse(where + ": two keys at " + std::to_string(twin->time) +
                       " s; every key needs a time of its own");
}

ParameterSetting KeyedParameter::at(double time) const {
    const auto after = std::upper_bound(m_Keys.begin(), m_Keys.end(), time,
                                        [](double t, const Key& key) { return t < key.time; });
    if (after == m_Keys.begin())
        return {m_Index, after->value};
    const auto before = after - 1;
    if (after == m_Keys.end() || !m_Linear)
        return {m_Index, before->value};
    return {m_Index, Between(*before, *after, time)};
}

std::vector<ParameterSetting> Animation::at(double time) const {
    std::vector<ParameterSetting> settings = fixed;
    for (const KeyedParameter& parameter : keyed)
        settings.push_back(parameter.at(time));
    return settings;
}

void SetFixed(Animation& animation, const ParameterSetting& setting) {
    ForgetParameter(animation, setting.index);
    animation.fixed.push_back(setting);
}

void SetKeyed(Animation& animation, KeyedParameter parameter) {
    ForgetParameter(animation, parameter.index());
    animation.keyed.push_back(std::move(parameter));
}

void ForgetParameter(Animation& animation, unsigned index) {
    std::erase_if(animation.fixed, [&](const auto& setting) { return setting.index == index; });
    std::erase_if(animation.keyed, [&](const auto& parameter) { return parameter.index() == index; });
}

double ParseKeyTime(const std::string& text, const FrameRate& rate, const std::string& where) {
    const auto time = KeyTime(text, rate);
    if (!time)
        throw WrongUse(where + ": \"" + text +
                       "\" is no time; frames such as 12 or seconds such as 0.5s were expected");
    return *time;
}

void AddSetting(Animation& animation, const std::string& assignment, const std::vector<Parameter>& parameters,
                const FrameRate& rate) {
    const auto [name, text] = SplitAssignment("--param", assignment);
    const unsigned index = FindParameter("--param", name, parameters);
    const Parameter& parameter = parameters[index];
    if (!BeginsWithTime(text) || IsEntry(text, parameter)) {
        SetFixed(animation, {index, ParseValue(text, parameter)});
        return;
    }
    const std::string where = "--param " + assignment;
    std::vector<KeyedParameter::Key> keys;
    for (const std::string& key : SplitKeys(text)) {
        const auto colon = key.find(':');
        if (colon == std::string::npos)
            throw WrongUse(where + ": the key \"" + Trimmed(key) + "\" has no time; TIME:VALUE was expected");
        keys.push_back({ParseKeyTime(key.substr(0, colon), rate, where),
                        ParseValue(Trimmed(key.substr(colon + 1)), parameter)});
    }
    SetKeyed(animation, KeyedParameter(index, parameter, std::move(keys), where));
}

} // namespace fxhost
