#pragma once

#include <string>
#include <vector>

#include "toolkit/ParameterValues.h"

namespace fxhost {

struct Keyframe {
    double time; // seconds
    Parameter::Value value;
};

// A parameter with keyframes. Numbers are interpolated linearly from keyframe to keyframe. Switches and
// pop-ups hold the value of the last keyframe. Before the first and after the last keyframe the value is
// constant.
class AnimatedParameter {
public:
    // Sorts the keyframes, of which there must be at least one. Throws WrongUse, whose text starts with
    // `where`, when two have the same time.
    AnimatedParameter(unsigned index, const Parameter& parameter, std::vector<Keyframe> keyframes,
                      const std::string& where);

    // Index in the effect's list of parameters.
    unsigned index() const { return m_Index; }
    // The value at a time in seconds.
    ParameterSetting at(double time) const;

private:
    unsigned m_Index;
    bool m_IsInterpolated;
    std::vector<Keyframe> m_Keyframes; // ascending
};

} // namespace fxhost
