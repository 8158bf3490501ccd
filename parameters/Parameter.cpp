#include "parameters/Parameter.h"

#include <bit>
#include <utility>

Parameter Parameter::invalid;

float Parameter::Value::Float(unsigned index) const {
    return std::bit_cast<float>(m_Words[index]);
}

void Parameter::Value::SetFloat(unsigned index, float number) {
    m_Words[index] = std::bit_cast<std::uint32_t>(number);
}

Parameter::Parameter() : Parameter({}, UNKNOWN, {}) {}

Parameter::Parameter(std::string scriptName, Type kind, std::string shownName)
    : name(std::move(scriptName)), label(std::move(shownName)), type(kind), choices("0|1|2|3|4|5|6|7|8|9"),
      choiceCount(10) {
    min.SetFloat(0, -100.0f);
    max.SetFloat(0, 100.0f);
}

unsigned int ParametersHolder::GetNumParams() const {
    return static_cast<unsigned int>(m_Parameters.size());
}

Parameter& ParametersHolder::GetParamByIdx(unsigned int index) const {
    return index < m_Parameters.size() ? m_Parameters[index] : Parameter::invalid;
}

Parameter& ParametersHolder::GetParamById(unsigned int handle) {
    const auto found = m_ByHandle.find(handle);
    return found != m_ByHandle.end() ? *found->second : Parameter::invalid;
}

void ParametersHolder::CloneFrom(ParametersHolder& source) {
    m_ByHandle.clear();
    m_Parameters.clear();
    const unsigned int count = source.GetNumParams();
    m_Parameters.reserve(count);
    for (unsigned int i = 0; i < count; ++i)
        m_Parameters.push_back(source.GetParamByIdx(i));
    for (Parameter& parameter : m_Parameters)
        m_ByHandle.emplace(parameter.handle, &parameter);
}
