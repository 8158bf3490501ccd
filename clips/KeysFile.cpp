#include <fstream>
#include <nlohmann/json.hpp>

#include "clips/KeysInternal.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// Keeps the order of the file and sees a name that stands there twice.
using Json = nlohmann::ordered_json;

std::string ElementText(const Json& value, const std::string& where) {
    if (value.is_number())
        return value.dump();
    throw WrongUse(where + ": " + value.dump() + " is no number");
}

// The value in the form that ParseValue reads.
std::string ValueText(const Json& value, const std::string& where) {
    if (value.is_boolean())
        return value.get<bool>() ? "on" : "off";
    if (value.is_string())
        return value.get<std::string>();
    if (!value.is_array())
        return ElementText(value, where);
    std::string text;
    for (const Json& element : value)
        text += (text.empty() ? "" : ",") + ElementText(element, where);
    return text;
}

Json ReadJson(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw WrongUse("--keys " + path + ": cannot be read");
    try {
        return Json::parse(file);
    } catch (const Json::exception& error) {
        const std::string text = error.what();
        throw WrongUse("--keys " + path + ": no JSON: " + text.substr(text.find("] ") + 2));
    }
}

} // namespace

void AddKeysFile(Animation& animation, const std::string& path, const std::vector<Parameter>& parameters,
                 const FrameRate& rate) {
    const Json file = ReadJson(path);
    if (!file.is_object())
        throw WrongUse("--keys " + path +
                       R"(: an object was expected, such as {"Amount": {"0": 0, "1s": 100}})");
    for (const auto& [name, content] : file.items()) {
        const std::string where = "--keys " + path + ": \"" + name + "\"";
        const unsigned index = FindParameter("--keys " + path, name, parameters);
        const Parameter& parameter = parameters[index];
        const auto parse = [&](const Json& value) {
            try {
                return ParseValue(ValueText(value, where), parameter);
            } catch (const WrongUse& error) {
                const std::string text = error.what();
                throw WrongUse(text.starts_with("--keys") ? text : "--keys " + path + ": " + text);
            }
        };
        if (!content.is_object()) {
            SetFixed(animation, {index, parse(content)});
            continue;
        }
        std::vector<KeyedParameter::Key> keys;
        for (const auto& [time, value] : content.items())
            keys.push_back({ParseKeyTime(time, rate, where), parse(value)});
        if (keys.empty())
            throw WrongUse(where + R"(: no keys; {"TIME": VALUE, ...} was expected)");
        SetKeyed(animation, KeyedParameter(index, parameter, std::move(keys), where));
    }
}

} // namespace fxhost
