#include "scripting/ArgumentKinds.h"

#include "parameters/ParameterTraits.h"

namespace Arg {

namespace {

TypedValue ReadValue(const ScriptCall& call, int index, Parameter::Type type) {
    const ParameterTraits& traits = TraitsOf(type);
    TypedValue value;
    value.type = type;
    value.isGiven = traits.isArray() ? call.IsArray(index) : traits.content != ParameterTraits::Content::None;
    if (!value.isGiven)
        return value;
    if (traits.isArray())
        call.Floats(index, value.numbers, traits.components);
    else if (traits.isFloat())
        value.numbers[0] = call.Float(index);
    else
        value.integer = call.Int(index);
    return value;
}

} // namespace

Vector4 Rectangle::Read(const ScriptCall& call, int index) {
    float numbers[4] = {-1.0f, 0.0f, 0.0f, 0.0f};
    if (call.IsArray(index))
        call.Floats(index, numbers, 4);
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

TypedValue ParameterValue::Read(const ScriptCall& call, int index) {
    const Parameter* const parameter = Live<Parameter>::Resolve(call.Handle(0));
    return ReadValue(call, index, parameter ? parameter->type : Parameter::UNKNOWN);
}

TypedValue UniformValue::Read(const ScriptCall& call, int index) {
    Shader* const shader = Live<Shader>::Resolve(call.Handle(0));
    Parameter::Type type = Parameter::UNKNOWN;
    if (shader) // a separate statement, as no temporary string may exist while ReadValue can longjmp
        type = shader->getParameterInfo(call.Text(1)).type;
    return ReadValue(call, index, type);
}

} // namespace Arg
