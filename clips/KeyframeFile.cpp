#include "clips/KeyframeFile.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "clips/KeyframeText.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// Keeps the order of the file, and keeps a name that occurs twice.
using Json = nlohmann::ordered_json;

std::string NumberText(const Json& value, const std::string& where) {
    if (value.is_number())
        return value.dump();
    throw WrongUse(where + ": " + value.dump() + " is not a number");
}

// The value in the form that ParseValue reads.
std::string ValueText(const Json& value, const std::string& where) {
    if (value.is_boolean())
        return value.get<bool>() ? "on" : "off";
    if (value.is_string())
        return value.get<std::string>();
    if (!value.is_array())
        return NumberText(value, where);
    std::string text;
    for (const Json& element : value)
        text += (text.empty() ? "" : ",") + NumberText(element, where);
    return text;
}

Json ReadJson(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw WrongUse("--keys " + path + ": cannot read the file");
    try {
        return Json::parse(file);
    } catch (const Json::exception& error) {
        const std::string text = error.what();
        throw WrongUse("--keys " + path + ": not valid JSON: " + text.substr(text.find("] ") + 2));
    }
}

// Reads the entries of one file; every error text starts with the file's name.
class KeyframeFileReader {
public:
    KeyframeFileReader(const std::string& path, const std::vector<Parameter>& parameters,
                       const FrameRate& rate)
        : m_Option("--keys " + path), m_Parameters(parameters), m_Rate(rate) {}

    void add(Animation& animation, const std::string& name, const Json& content) const {
        const std::string where = m_Option + ": \"" + name + "\"";
        const unsigned index = FindParameter(m_Option, name, m_Parameters);
        const Parameter& parameter = m_Parameters[index];
        if (!content.is_object()) {
            animation.setConstant({index, value(content, parameter, where)});
            return;
        }
        std::vector<Keyframe> keyframes;
        for (const auto& [time, keyframe] : content.items())
            keyframes.push_back({ParseKeyframeTime(time, m_Rate, where), value(keyframe, parameter, where)});
        if (keyframes.empty())
            throw WrongUse(where + R"(: has no keyframes; expected {"TIME": VALUE, ...})");
        animation.setAnimated(AnimatedParameter(index, parameter, std::move(keyframes), where));
    }

private:
    Parameter::Value value(const Json& json, const Parameter& parameter, const std::string& where) const {
        try {
            return ParseValue(ValueText(json, where), parameter);
        } catch (const WrongUse& error) {
            const std::string text = error.what();
            throw WrongUse(text.starts_with("--keys") ? text : m_Option + ": " + text);
        }
    }

    const std::string m_Option;
    const std::vector<Parameter>& m_Parameters;
    const FrameRate m_Rate;
};

} // namespace

void AddKeyframeFile(Animation& animation, const std::string& path, const std::vector<Parameter>& parameters,
                     const FrameRate& rate) {
    const Json file = ReadJson(path);
    if (!file.is_object())
        throw WrongUse("--keys " + path + R"(: expected an object, such as {"Amount": {"0": 0, "1s": 100}})");
    const KeyframeFileReader reader(path, parameters, rate);
    for (const auto& [name, content] : file.items())
        reader.add(animation, name, content);
}

} // namespace fxhost
