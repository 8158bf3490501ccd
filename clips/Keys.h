#pragma once

#include <string>
#include <vector>

#include "clips/FrameList.h"
#include "toolkit/ParameterValues.h"

namespace fxhost {

// A parameter that moves. Numbers go linearly from key to key, switches and pop-ups keep the last key's value
// until the next one; before the first key and after the last one the value stays.
class KeyedParameter {
public:
    struct Key {
        double time; // seconds
        Parameter::Value value;
    };

    // Puts the keys in order. Throws WrongUse, opened by `where`, when two have the same time.
    KeyedParameter(unsigned index, const Parameter& parameter, std::vector<Key> keys,
                   const std::string& where);

    unsigned index() const { return m_Index; }
    ParameterSetting at(double time) const;

private:
    unsigned m_Index;
    bool m_Linear;
    std::vector<Key> m_Keys; // at least one, ascending
};

// All parameter values of a clip.
struct Animation {
    std::vector<ParameterSetting> fixed;
    std::vector<KeyedParameter> keyed;

    std::vector<ParameterSetting> at(double time) const;
};

// A key's time: "12" is in frames at `rate`, "1.5s" in seconds. Throws WrongUse opened by `where`.
double ParseKeyTime(const std::string& text, const FrameRate& rate, const std::string& where);

// Adds what `--param` says: "NAME=VALUE" as ParseSetting reads it, or "NAME=TIME:VALUE, TIME:VALUE, ...".
// Keys are separated by ";" when there is one, else by the commas that a "TIME:" follows. A later setting of
// a parameter replaces an earlier one. Throws WrongUse.
void AddSetting(Animation& animation, const std::string& assignment, const std::vector<Parameter>& parameters,
                const FrameRate& rate);

// Adds the parameters of a JSON file: {"Amount": {"0": 0, "1s": 100}, "Centre": {"0": [10, 20], ...},
// "Mode": "Fast"}. Values are numbers, arrays of numbers, true, false, or texts as in ParseValue; a value
// without times is fixed. Throws WrongUse naming the file.
void AddKeysFile(Animation& animation, const std::string& path, const std::vector<Parameter>& parameters,
                 const FrameRate& rate);

} // namespace fxhost
