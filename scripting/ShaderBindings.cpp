#include "parameters/ParameterTraits.h"
#include "scripting/Bindings.h"

namespace {

// These numbers leave a uniform unchanged.
constexpr float s_Unchanged = -12345678.0f;
constexpr std::int32_t s_UnchangedInteger = -12345678;

// Returns the shader's own record of a uniform, or null.
Parameter* FindUniform(Shader& shader, const char* name) {
    const int index = shader.getParamLocation(name);
    auto& parameters = shader.parameters();
    return index >= 0 && static_cast<std::size_t>(index) < parameters.size()
               ? &parameters[static_cast<std::size_t>(index)]
               : nullptr;
}

ScriptResult InitShader(const std::string& name, const std::string& source) {
    const bool hasSource = source != "undefined";
    return ScriptResult::Number(Context::Current().InitResource<Shader>(name, hasSource ? source : ""));
}

ScriptResult SetShaderParam(Shader& shader, const Parameter& parameter) {
    Parameter* const uniform = FindUniform(shader, parameter.name.c_str());
    if (uniform && uniform->type == parameter.type)
        uniform->value = parameter.value;
    return ScriptResult::Bool(true);
}

ScriptResult GetShaderParamType(Shader& shader, const char* name) {
    return ScriptResult::Number(shader.getParameterInfo(name).type);
}

ScriptResult RenderShader(Shader& shader, RenderTarget* target, bool flip, const Vector4& viewport) {
    if (target && target->usable()) {
        target->set(&viewport);
        shader.begin();
        shader.render(flip);
        shader.end();
    }
    return ScriptResult::Bool(true);
}

bool IsUnchanged(const Parameter& uniform, const float* numbers, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        if (numbers[i] != uniform.value.Float(i)) // NaN on either side counts as different
            return false;
    return true;
}

void StoreFloats(Parameter& uniform, const float* numbers, unsigned count) {
    uniform.changed = !IsUnchanged(uniform, numbers, count);
    for (unsigned i = 0; uniform.changed && i < count; ++i)
        uniform.value.SetFloat(i, numbers[i]);
}

// Integers also reach LAYER uniforms, which hold the GL name of a texture; TEXTURE uniforms are never set.
void StoreInteger(Parameter& uniform, std::int32_t number) {
    const bool isInteger = TraitsOf(uniform.type).isInteger() && number != s_UnchangedInteger;
    if (uniform.type != Parameter::LAYER && !isInteger)
        return;
    uniform.changed = number != uniform.value.Int(0);
    uniform.value.SetInt(0, number);
}

ScriptResult SetShaderParamVal(Shader& shader, const char* name, const Arg::TypedValue& value) {
    Parameter* const uniform = value.isGiven ? FindUniform(shader, name) : nullptr;
    if (!uniform)
        return ScriptResult::Bool(true);
    const ParameterTraits& traits = TraitsOf(value.type);
    if (traits.isTexture())
        StoreInteger(*uniform,
                     static_cast<std::int32_t>(TextureNameOf(static_cast<std::uint32_t>(value.integer))));
    else if (traits.isInteger())
        StoreInteger(*uniform, value.integer);
    else if (uniform->type == value.type && (traits.isArray() || value.numbers[0] != s_Unchanged))
        StoreFloats(*uniform, value.numbers, traits.components);
    return ScriptResult::Bool(true);
}

ScriptResult GetShaderError(const Shader* shader) {
    return ScriptResult::Text(shader ? shader->errorText().c_str() : "");
}

using Live = Arg::Live<Shader>;

constexpr NativeFunction s_Functions[] = {
    Native<InitShader, Refusal::Zero, Arg::Passed<Arg::Text>, Arg::Optional<Arg::Text>>("SV_initShader"),
    Native<SetShaderParam, Refusal::False, Live, Arg::Live<Parameter>>("SV_setShaderParam"),
    Native<GetShaderParamType, Refusal::Zero, Live, Arg::Name>("SV_getShaderParamType"),
    Native<RenderShader, Refusal::False, Live, Arg::Tagged<RenderTarget>, Arg::Bool, Arg::Rectangle>(
        "SV_renderShader"),
    Native<SetShaderParamVal, Refusal::False, Live, Arg::Name, Arg::UniformValue>("SV_setShaderParamVal"),
    Native<GetShaderError, Refusal::NotAShader, Arg::Tagged<Shader>>("SV_getShaderError"),
};

} // namespace

std::span<const NativeFunction> ShaderBindings() {
    return s_Functions;
}
