#pragma once

#include <string>
#include <vector>

#include "clips/AnimatedParameter.h"
#include "clips/FrameRate.h"

namespace fxhost {

// The parameter values of a clip: constant ones and animated ones, at most one entry for each parameter.
class Animation {
public:
    // Each replaces an earlier entry of the same parameter.
    void setConstant(const ParameterSetting& setting);
    void setAnimated(AnimatedParameter parameter);

    // The values at a time in seconds.
    std::vector<ParameterSetting> at(double time) const;

private:
    void remove(unsigned index);

    std::vector<ParameterSetting> m_Constant;
    std::vector<AnimatedParameter> m_Animated;
};

// Reads a keyframe file (--keys; none when the path is empty) and then the "NAME=..." texts of --param, which
// replace parameters of the file. Times in frames count at `rate`. Throws WrongUse.
Animation ReadAnimation(const std::string& keyframeFile, const std::vector<std::string>& settings,
                        const std::vector<Parameter>& parameters, const FrameRate& rate);

} // namespace fxhost
