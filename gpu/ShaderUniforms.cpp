// The functions of Shader that describe its uniforms as parameters and upload their values.

#include <cstdio>
#include <string_view>

#include "gpu/Shader.h"
#include "gpu/UniformType.h"
#include "parameters/ParameterTraits.h"
#include "platform/GL.h"

namespace {

constexpr GLsizei s_MaxNameLength = 128; // with the terminating zero

constexpr std::string_view s_EngineSupplied[] = {"sInput0", "resolution", "time", "_height_"};

// Effects use both spellings. %d is the texture unit.
constexpr const char* s_TextureParameterNames[] = {"s_Texture%dParams", "Texture%dParams"};

bool IsEngineSupplied(const std::string& name) {
    for (const std::string_view known : s_EngineSupplied)
        if (name == known)
            return true;
    return name.find("s_Texture") != std::string::npos;
}

// Returns a parameter without the defaults that a script's parameters have.
Parameter EmptyParameter() {
    Parameter parameter;
    parameter.min = {};
    parameter.max = {};
    parameter.choices.clear();
    parameter.choiceCount = 0;
    return parameter;
}

const Parameter* FindByName(const ParametersHolder& holder, const std::string& name) {
    const unsigned count = holder.GetNumParams();
    for (unsigned i = 0; i < count; ++i)
        if (const Parameter& parameter = holder.GetParamByIdx(i); parameter.name == name)
            return &parameter;
    return nullptr;
}

} // namespace

void Shader::gatherUniforms() {
    GLint count = 0;
    glGetProgramiv(m_Program, GL_ACTIVE_UNIFORMS, &count);
    std::vector<Parameter> found;
    found.reserve(static_cast<std::size_t>(count));
    for (GLint i = 0; i < count; ++i) {
        Parameter parameter = describeUniform(static_cast<unsigned>(i));
        if (parameter.arraySize != 0)
            found.push_back(std::move(parameter));
    }
    m_Parameters = std::move(found);
}

Parameter Shader::describeUniform(unsigned index) {
    GLchar name[s_MaxNameLength] = "";
    GLint size = 0;
    GLenum glType = 0;
    glGetActiveUniform(m_Program, index, s_MaxNameLength, nullptr, &size, &glType, name);
    Parameter parameter = EmptyParameter();
    if (size == 0)
        return parameter;
    parameter.name = name;
    parameter.arraySize = static_cast<std::uint32_t>(size);
    if (size >= 2) {
        m_ErrorText = "Shader parameter arrays are not supported!";
    } else {
        const UniformType* const known = FindUniformType(glType);
        parameter.type = known ? known->type : Parameter::UNKNOWN;
        if (!known)
            m_ErrorText = "Unknown shader parameter!";
    }
    parameter.engineSupplied = IsEngineSupplied(parameter.name);
    parameter.uniformLocation = getUniformLocation(name);
    if (s_GlobalParameters)
        if (const Parameter* global = FindByName(*s_GlobalParameters, parameter.name))
            parameter.type = global->type;
    return parameter;
}

// Textures come last, because each also sets its size uniforms. These are in the list too, and uploading
// their stored values later would overwrite the sizes.
void Shader::applyParameters() {
    for (const Parameter& parameter : m_Parameters)
        applyNumbers(parameter);
    for (const Parameter& parameter : m_Parameters)
        if (parameter.type == Parameter::LAYER)
            applyTexture(parameter);
}

void Shader::applyNumbers(const Parameter& parameter) {
    const ParameterTraits& traits = TraitsOf(parameter.type);
    const GLint location = parameter.uniformLocation;
    const auto* floats = static_cast<const GLfloat*>(parameter.value.Data());
    if (traits.isInteger())
        glUniform1i(location, parameter.value.Int(0));
    else if (traits.components == 1)
        glUniform1fv(location, 1, floats);
    else if (traits.components == 2)
        glUniform2fv(location, 1, floats);
    else if (traits.components == 3)
        glUniform3fv(location, 1, floats);
    else if (traits.components == 4)
        glUniform4fv(location, 1, floats);
}

void Shader::applyTexture(const Parameter& parameter) {
    glActiveTexture(GL_TEXTURE0 + m_TextureUnit);
    glBindTexture(GL_TEXTURE_2D, parameter.value.Word(0));
    glUniform1i(parameter.uniformLocation, static_cast<GLint>(m_TextureUnit));
    GLint width = 0, height = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    applyTextureParameters(width, height);
    ++m_TextureUnit;
}

void Shader::applyTextureParameters(int width, int height) {
    const auto w = static_cast<GLfloat>(width);
    const auto h = static_cast<GLfloat>(height);
    const GLfloat extent[] = {w, h, 1.0f / w, 1.0f / h};
    for (const char* format : s_TextureParameterNames) {
        char name[64];
        std::snprintf(name, sizeof name, format, static_cast<int>(m_TextureUnit));
        if (const int location = getUniformLocation(name); location != -1)
            glUniform4fv(location, 1, extent);
    }
}

int Shader::getUniformLocation(const char* name) {
    const auto [entry, isNew] = m_UniformLocations.try_emplace(name, -1);
    if (isNew)
        entry->second = glGetUniformLocation(m_Program, name);
    return entry->second;
}

int Shader::getParamLocation(const char* name) {
    const auto cached = m_ParameterIndices.find(name);
    if (cached != m_ParameterIndices.end())
        return cached->second;
    for (std::size_t i = 0; i < m_Parameters.size(); ++i)
        if (m_Parameters[i].name == name)
            return m_ParameterIndices[name] = static_cast<int>(i);
    return -1;
}

Parameter& Shader::getParameterInfo(const std::string& name) {
    static Parameter empty = EmptyParameter();
    const int index = getParamLocation(name.c_str());
    if (index < 0 || static_cast<std::size_t>(index) >= m_Parameters.size())
        return empty;
    return m_Parameters[static_cast<std::size_t>(index)];
}
