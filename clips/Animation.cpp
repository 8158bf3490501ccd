#include "clips/Animation.h"

#include "clips/KeyframeFile.h"
#include "clips/KeyframeText.h"

namespace fxhost {

void Animation::setConstant(const ParameterSetting& setting) {
    remove(setting.index);
    m_Constant.push_back(setting);
}

void Animation::setAnimated(AnimatedParameter parameter) {
    remove(parameter.index());
    m_Animated.push_back(std::move(parameter));
}

void Animation::remove(unsigned index) {
    std::erase_if(m_Constant, [&](const auto& setting) { return setting.index == index; });
    std::erase_if(m_Animated, [&](const auto& parameter) { return parameter.index() == index; });
}

std::vector<ParameterSetting> Animation::at(double time) const {
    std::vector<ParameterSetting> settings = m_Constant;
    for (const AnimatedParameter& parameter : m_Animated)
        settings.push_back(parameter.at(time));
    return settings;
}

Animation ReadAnimation(const std::string& keyframeFile, const std::vector<std::string>& settings,
                        const std::vector<Parameter>& parameters, const FrameRate& rate) {
    Animation animation;
    if (!keyframeFile.empty())
        AddKeyframeFile(animation, keyframeFile, parameters, rate);
    for (const auto& setting : settings)
        AddSetting(animation, setting, parameters, rate);
    return animation;
}

} // namespace fxhost
