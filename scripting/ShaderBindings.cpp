#include <algorithm>
#include <cstring>

#include "context/Context.h"
#include "parameters/ParameterTraits.h"
#include "scripting/Bindings.h"
#include "scripting/TextureSource.h"

namespace {

// Numbers that leave a uniform as it is.
constexpr float s_Unchanged = -12345678.0f;
constexpr std::int32_t s_UnchangedInteger = -12345678;

// A shader whose GL objects exist, or null. Its error text does not matter here.
Shader* UsableShader(std::uint32_t handle) {
    if ((handle & Context::TagMask) != Shader::Tag)
        return nullptr;
    Shader& shader = Context::Current().GetResource<Shader>(handle);
    return shader.usable() ? &shader : nullptr;
}

// The shader's own record of a uniform, or null.
Parameter* FindUniform(Shader& shader, const char* name) {
    const int index = shader.getParamLocation(name);
    auto& parameters = shader.parameters();
    return index >= 0 && static_cast<std::size_t>(index) < parameters.size()
               ? &parameters[static_cast<std::size_t>(index)]
               : nullptr;
}

ScriptResult InitShader(ScriptCall& call) {
    if (call.Count() < 1)
        return ScriptResult::Number(0);
    const char* const name = call.Text(0);
    const char* source = call.Count() > 1 ? call.Text(1) : "";
    if (std::strcmp(source, "undefined") == 0)
        source = "";
    return ScriptResult::Number(Context::Current().InitResource<Shader>(name, source));
}

ScriptResult SetShaderParam(ScriptCall& call) {
    const std::uint32_t shaderHandle = call.Handle(0);
    const std::uint32_t parameterHandle = call.Handle(1);
    Shader* const shader = UsableShader(shaderHandle);
    if (!shader || (parameterHandle & Context::TagMask) != Parameter::Tag)
        return ScriptResult::Bool(false);
    const Parameter& parameter = Context::Current().GetResource<Parameter>(parameterHandle);
    if (parameter.handle == 0)
        return ScriptResult::Bool(false);
    Parameter* const uniform = FindUniform(*shader, parameter.name.c_str());
    if (uniform && uniform->type == parameter.type)
        uniform->value = parameter.value;
    return ScriptResult::Bool(true);
}

ScriptResult GetShaderParamType(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const char* const name = call.Text(1);
    Shader* const shader = UsableShader(handle);
    return ScriptResult::Number(shader && name ? shader->getParameterInfo(name).type : Parameter::UNKNOWN);
}

ScriptResult RenderShader(ScriptCall& call) {
    const std::uint32_t shaderHandle = call.Handle(0);
    const std::uint32_t targetHandle = call.Handle(1);
    const bool flip = call.Bool(2);
    float rect[4] = {-1.0f, 0.0f, 0.0f, 0.0f};
    if (call.IsArray(3))
        call.Floats(3, rect, 4);
    Shader* const shader = UsableShader(shaderHandle);
    if (!shader || (targetHandle & Context::TagMask) != RenderTarget::Tag)
        return ScriptResult::Bool(false);
    RenderTarget& target = Context::Current().GetResource<RenderTarget>(targetHandle);
    if (target.usable()) {
        const Vector4 viewport{rect[0], rect[1], rect[2], rect[3]};
        target.set(&viewport);
        shader->begin();
        shader->render(flip);
        shader->end();
    }
    return ScriptResult::Bool(true);
}

// What SV_setShaderParamVal stores. Each function returns quietly where the uniform is of another type.

void StoreNumber(Parameter& uniform, float number) {
    if (TraitsOf(uniform.type).components != 1 || number == s_Unchanged)
        return;
    uniform.changed = number != uniform.value.Float(0); // NaN on either side counts as different
    if (uniform.changed)
        uniform.value.SetFloat(0, number);
}

void StoreNumbers(Parameter& uniform, const float* numbers, unsigned count) {
    uniform.changed = false;
    for (unsigned i = 0; i < count; ++i)
        uniform.changed |= numbers[i] != uniform.value.Float(i);
    for (unsigned i = 0; uniform.changed && i < count; ++i)
        uniform.value.SetFloat(i, numbers[i]);
}

void StoreInteger(Parameter& uniform, std::int32_t number) {
    const bool isInteger = TraitsOf(uniform.type).isInteger();
    if (uniform.type != Parameter::LAYER && !(isInteger && number != s_UnchangedInteger))
        return;
    uniform.changed = number != uniform.value.Int(0);
    if (uniform.changed)
        uniform.value.SetInt(0, number);
}

ScriptResult SetShaderParamVal(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const char* const name = call.Text(1);
    Shader* const described = UsableShader(handle);
    if (!described || !name)
        return ScriptResult::Bool(false);
    const Parameter::Type type = described->getParameterInfo(name).type;
    const ParameterTraits& traits = TraitsOf(type);

    // Reading the value can run script code, so the shader is looked up again afterwards.
    float numbers[4] = {};
    std::int32_t integer = 0;
    if (traits.isArray()) {
        if (!call.IsArray(2))
            return ScriptResult::Bool(true);
        call.Floats(2, numbers, traits.components);
    } else if (traits.isFloat()) {
        numbers[0] = call.Float(2);
    } else if (traits.isTexture()) {
        integer = static_cast<std::int32_t>(TextureNameOf(call.Handle(2)));
    } else if (traits.isInteger()) {
        integer = TruncateToInt(call.Number(2));
    } else {
        return ScriptResult::Bool(true);
    }

    Shader* const shader = UsableShader(handle);
    Parameter* const uniform = shader ? FindUniform(*shader, name) : nullptr;
    if (!uniform)
        return ScriptResult::Bool(true);
    if (traits.isArray()) {
        if (uniform->type == type)
            StoreNumbers(*uniform, numbers, traits.components);
    } else if (traits.isFloat()) {
        StoreNumber(*uniform, numbers[0]);
    } else {
        StoreInteger(*uniform, integer);
    }
    return ScriptResult::Bool(true);
}

ScriptResult GetShaderError(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    if ((handle & Context::TagMask) != Shader::Tag)
        return ScriptResult::Text("Id is not a shader!");
    return ScriptResult::Text(Context::Current().GetResource<Shader>(handle).errorText().c_str());
}

constexpr NativeFunction s_Functions[] = {
    {"SV_initShader", Trampoline<InitShader>, DUK_VARARGS},
    {"SV_setShaderParam", Trampoline<SetShaderParam>, 2},
    {"SV_getShaderParamType", Trampoline<GetShaderParamType>, 2},
    {"SV_renderShader", Trampoline<RenderShader>, 4},
    {"SV_setShaderParamVal", Trampoline<SetShaderParamVal>, 3},
    {"SV_getShaderError", Trampoline<GetShaderError>, 1},
};

} // namespace

std::span<const NativeFunction> ShaderBindings() {
    return s_Functions;
}
