#include "check/UniformWatch.h"

#include <algorithm>
#include <iterator>
#include <regex>

#include "check/ShaderText.h"
#include "context/Context.h"
#include "packaging/ScriptScan.h"
#include "platform/GL.h"
#include "toolkit/ParameterValues.h"
#include "utils/Utils.h"

namespace fxhost {

namespace {

// A quiet NaN; as an integer a number that no pop-up reaches. NaN differs from everything, so any store wins.
constexpr std::int32_t s_Unset = 0x7FC0BEEF;

struct UniformKind {
    GLenum type;
    const char* name;
    std::vector<Parameter::Type> fits; // parameter types whose upload suits it
};

const UniformKind* FindKind(GLenum type) {
    static const UniformKind kinds[] = {
        {GL_FLOAT, "float", {Parameter::FLOAT, Parameter::ANGLE}},
        {GL_FLOAT_VEC2, "vec2", {Parameter::POINT2D}},
        {GL_FLOAT_VEC3, "vec3", {Parameter::POINT}},
        {GL_FLOAT_VEC4, "vec4", {Parameter::COLOR}},
        {GL_BOOL, "bool", {Parameter::BOOL, Parameter::POPUP, Parameter::FLOAT}},
        {GL_INT, "int", {Parameter::POPUP, Parameter::BOOL}},
        {GL_SAMPLER_2D, "sampler2D", {Parameter::LAYER}},
    };
    const auto found = std::find_if(std::begin(kinds), std::end(kinds),
                                    [&](const UniformKind& kind) { return kind.type == type; });
    return found == std::end(kinds) ? nullptr : found;
}

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

// Set by the engine itself at every draw.
bool IsEngines(const std::string& name) {
    static const std::regex pattern("(s_)?Texture[0-9]+Params");
    return std::regex_match(name, pattern);
}

bool IsZero(const Parameter& uniform) {
    return uniform.value == Parameter::Value();
}

// Textures start as name 0, which no set texture has; they need no mark.
bool IsMarkable(const Parameter& uniform) {
    return uniform.type != Parameter::UNKNOWN && uniform.type != Parameter::LAYER &&
           uniform.type != Parameter::TEXTURE;
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

// What keeps a uniform from ever being uploaded, or from being uploaded right; empty when nothing does.
std::string Obstacle(const GLUniform& uniform, const Parameter& record, const Parameter* parameter) {
    const UniformKind* kind = FindKind(uniform.type);
    if (uniform.size > 1)
        return "is an array; the engine never uploads arrays";
    if (!kind)
        return "is of a type that the engine never uploads (matrices, integer vectors and other samplers are "
               "such)";
    if (!parameter)
        return "";
    const std::string both = std::string("is a ") + kind->name +
                             ", but the parameter of this name is of type " + TypeName(parameter->type);
    if (std::find(kind->fits.begin(), kind->fits.end(), parameter->type) == kind->fits.end())
        return both + ", whose value does not reach it";
    if (record.type != parameter->type)
        return both + " and was declared after the shader was loaded, so its value does not reach it; "
                      "declare parameters first";
    return "";
}

} // namespace

void UniformWatch::beforeFrame() {
    for (Shader* shader : UsableShaders())
        for (Parameter& uniform : shader->parameters())
            if (IsMarkable(uniform) && IsZero(uniform))
                uniform.value.SetInt(0, s_Unset);
}

void UniformWatch::afterFrame() {
    for (Shader* shader : UsableShaders())
        for (Parameter& uniform : shader->parameters()) {
            const bool isMarked = IsMarkable(uniform) && uniform.value.Int(0) == s_Unset;
            // A shader made within the frame was never marked: zero says nothing about it.
            m_IsSet[{NameOf(*shader), uniform.name}] |= !isMarked && !IsZero(uniform);
            if (isMarked)
                uniform.value = Parameter::Value();
            else if (IsMarkable(uniform) && IsZero(uniform))
                m_IsSet[{NameOf(*shader), uniform.name}] = true;
        }
}

std::vector<Diagnostic> UniformWatch::findings(const std::vector<Parameter>& parameters) const {
    std::vector<Diagnostic> found;
    for (Shader* shader : UsableShaders())
        for (auto& finding : shaderFindings(*shader, parameters))
            if (std::find(found.begin(), found.end(), finding) == found.end())
                found.push_back(std::move(finding));
    return found;
}

std::vector<Diagnostic> UniformWatch::shaderFindings(Shader& shader,
                                                     const std::vector<Parameter>& parameters) const {
    const std::string script = m_Source.ReadText("fx.js").value_or("");
    const std::string shaderName = NameOf(shader);
    const bool isFile = !shader.filePath().empty();
    const std::string file = isFile ? m_Source.Shown(shaderName) : m_Source.Shown("fx.js");
    std::vector<Diagnostic> found;
    for (const GLUniform& uniform : ActiveUniforms(shader)) {
        const std::string name = uniform.name.substr(0, uniform.name.find('['));
        const Parameter* parameter = FindByName(parameters, name);
        const Parameter& record = shader.getParameterInfo(uniform.name);
        std::string trouble = Obstacle(uniform, record, parameter);
        const auto known = m_IsSet.find({shaderName, uniform.name});
        const bool isSet = known != m_IsSet.end() && known->second;
        if (trouble.empty() && !isSet && !IsEngines(name) && !NamesUniform(script, name))
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
