#include "check/UniformChecks.h"

#include <algorithm>
#include <regex>

#include "check/ShaderChecks.h"
#include "context/Context.h"
#include "gpu/UniformType.h"
#include "packaging/ScriptScan.h"
#include "parameters/ParameterTraits.h"
#include "platform/GL.h"
#include "utils/Utils.h"

namespace fxhost {

namespace {

// A quiet NaN; as an integer a number that no pop-up reaches. NaN differs from everything, so any store wins.
constexpr std::int32_t s_Unset = 0x7FC0BEEF;

struct GLUniform {
    std::string name;
    GLint size = 0;
    GLenum type = 0;
};

std::vector<GLUniform> ActiveUniforms(const Shader& shader) {
    GLint count = 0;
    glGetProgramiv(shader.program(), GL_ACTIVE_UNIFORMS, &count);
    std::vector<GLUniform> uniforms;
    for (GLint i = 0; i < count; ++i) {
        GLUniform uniform;
        char name[128] = "";
        glGetActiveUniform(shader.program(), static_cast<GLuint>(i), sizeof name, nullptr, &uniform.size,
                           &uniform.type, name);
        uniform.name = name;
        if (!uniform.name.starts_with("gl_"))
            uniforms.push_back(uniform);
    }
    return uniforms;
}

bool IsZero(const Parameter& uniform) {
    return uniform.value == Parameter::Value();
}

// Texture uniforms start as GL name 0, which no texture has, so they need no marker.
bool IsMarkable(const Parameter& uniform) {
    return uniform.type != Parameter::UNKNOWN && !TraitsOf(uniform.type).isTexture();
}

std::string NameOf(const Shader& shader) {
    return Utils::ToNarrow(shader.filePath().empty() ? shader.name() : shader.filePath());
}

std::vector<Shader*> UsableShaders() {
    std::vector<Shader*> usable;
    for (Shader* shader : Context::Current().LiveEntities<Shader>())
        if (shader->usable() && shader->errorText().empty())
            usable.push_back(shader);
    return usable;
}

const Parameter* FindByName(const std::vector<Parameter>& list, const std::string& name) {
    const auto found =
        std::find_if(list.begin(), list.end(), [&](const Parameter& entry) { return entry.name == name; });
    return found == list.end() ? nullptr : &*found;
}

// The reason why a uniform is not uploaded, or is uploaded with wrong values; empty when there is none.
std::string Obstacle(const GLUniform& uniform, const Parameter& record, const Parameter* parameter) {
    const UniformType* kind = FindUniformType(uniform.type);
    if (uniform.size > 1)
        return "is an array; the engine never uploads arrays";
    if (!kind)
        return "is of a type that the engine never uploads (matrices, integer vectors and other samplers are "
               "such)";
    if (!parameter)
        return "";
    const std::string both = std::string("is a ") + kind->name +
                             ", but the parameter of this name is of type " + TraitsOf(parameter->type).name;
    if (!kind->takes(parameter->type))
        return both + ", whose value does not reach it";
    if (record.type != parameter->type)
        return both + " and was declared after the shader was loaded, so its value does not reach it; "
                      "declare parameters first";
    return "";
}

} // namespace

bool IsSetByEngine(const std::string& name) {
    static const std::regex s_Pattern("(s_)?Texture[0-9]+Params");
    return std::regex_match(name, s_Pattern);
}

Diagnostic UnsetUniform(const EffectSource& source, const Shader& shader, const std::string& name) {
    const std::string shaderName = NameOf(shader), script = source.ReadText("fx.js").value_or("");
    const bool isFile = !shader.filePath().empty();
    return {source.DisplayPath(isFile ? shaderName : "fx.js"),
            isFile ? LineOfUniform(shader.source(), name) : LineOfInlineShader(script, shaderName),
            Severity::Warning,
            "uniform \"" + name + "\" is never set by a parameter or a call, so it stays zero",
            {}};
}

void UniformChecks::beforeFrame() {
    for (Shader* shader : UsableShaders())
        for (Parameter& uniform : shader->parameters())
            if (IsMarkable(uniform) && IsZero(uniform))
                uniform.value.SetInt(0, s_Unset);
}

void UniformChecks::afterFrame() {
    for (Shader* shader : UsableShaders())
        for (Parameter& uniform : shader->parameters()) {
            const bool isMarked = IsMarkable(uniform) && uniform.value.Int(0) == s_Unset;
            // A shader that was created within the frame has no marker; there zero means nothing.
            m_IsSet[{NameOf(*shader), uniform.name}] |= !isMarked && !IsZero(uniform);
            if (isMarked)
                uniform.value = Parameter::Value();
            else if (IsMarkable(uniform) && IsZero(uniform))
                m_IsSet[{NameOf(*shader), uniform.name}] = true;
        }
}

std::vector<Diagnostic> UniformChecks::findings(const std::vector<Parameter>& parameters) const {
    std::vector<Diagnostic> found;
    for (Shader* shader : UsableShaders())
        for (auto& finding : shaderFindings(*shader, parameters))
            if (std::find(found.begin(), found.end(), finding) == found.end())
                found.push_back(std::move(finding));
    return found;
}

std::vector<Diagnostic> UniformChecks::shaderFindings(Shader& shader,
                                                      const std::vector<Parameter>& parameters) const {
    const std::string script = m_Source.ReadText("fx.js").value_or("");
    const std::string shaderName = NameOf(shader);
    const bool isFile = !shader.filePath().empty();
    const std::string file = isFile ? m_Source.DisplayPath(shaderName) : m_Source.DisplayPath("fx.js");
    std::vector<Diagnostic> found;
    for (const GLUniform& uniform : ActiveUniforms(shader)) {
        const std::string name = uniform.name.substr(0, uniform.name.find('['));
        const Parameter* parameter = FindByName(parameters, name);
        const Parameter& record = shader.getParameterInfo(uniform.name);
        std::string trouble = Obstacle(uniform, record, parameter);
        const auto known = m_IsSet.find({shaderName, uniform.name});
        const bool isSet = known != m_IsSet.end() && known->second;
        if (trouble.empty() && !isSet && !IsSetByEngine(name) && !NamesUniform(script, name))
            trouble = parameter ? "is never set: no frame bound the parameter of this name to it"
                                : "is never set by a parameter or a call, so it stays zero";
        if (!trouble.empty())
            found.push_back(
                {file,
                 isFile ? LineOfUniform(shader.source(), name) : LineOfInlineShader(script, shaderName),
                 Severity::Warning,
                 "uniform \"" + name + "\" " + trouble,
                 {}});
    }
    return found;
}

} // namespace fxhost
