#include "clips/AnimatedParameter.h"

#include <algorithm>

#include "parameters/ParameterTraits.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

constexpr unsigned s_WordCount = 4; // of a parameter's value

Parameter::Value Interpolated(const Keyframe& from, const Keyframe& to, double time) {
    const double share = (time - from.time) / (to.time - from.time);
    Parameter::Value value;
    for (unsigned i = 0; i < s_WordCount; ++i) {
        const double a = from.value.Float(i), b = to.value.Float(i);
        value.SetFloat(i, static_cast<float>(a + (b - a) * share));
    }
    return value;
}

} // namespace

AnimatedParameter::AnimatedParameter(unsigned index, const Parameter& parameter,
                                     std::vector<Keyframe> keyframes, const std::string& where)
    : m_Index(index), m_IsInterpolated(TraitsOf(parameter.type).isInterpolated()),
      m_Keyframes(std::move(keyframes)) {
    std::stable_sort(m_Keyframes.begin(), m_Keyframes.end(),
                     [](const Keyframe& a, const Keyframe& b) { return a.time < b.time; });
    const auto twin =
        std::adjacent_find(m_Keyframes.begin(), m_Keyframes.end(),
                           [](const Keyframe& a, const Keyframe& b) { return a.time == b.time; });
    if (twin != m_Keyframes.end())
        throw WrongUse(where + ": two keyframes at " + std::to_string(twin->time) +
                       " s; expected a different time for each keyframe");
}

ParameterSetting AnimatedParameter::at(double time) const {
    const auto after = std::upper_bound(m_Keyframes.begin(), m_Keyframes.end(), time,
                                        [](double t, const Keyframe& keyframe) { return t < keyframe.time; });
    if (after == m_Keyframes.begin())
        return {m_Index, after->value};
    const auto before = after - 1;
    if (after == m_Keyframes.end() || !m_IsInterpolated)
        return {m_Index, before->value};
    return {m_Index, Interpolated(*before, *after, time)};
}

} // namespace fxhost
