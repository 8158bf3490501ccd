#include "gpu/UniformType.h"

#include <algorithm>
#include <iterator>

#include "parameters/ParameterTraits.h"

namespace {

constexpr UniformType s_UniformTypes[] = {
    {GL_FLOAT, "float", Parameter::FLOAT},
    {GL_FLOAT_VEC2, "vec2", Parameter::POINT2D},
    {GL_FLOAT_VEC3, "vec3", Parameter::POINT},
    {GL_FLOAT_VEC4, "vec4", Parameter::COLOR},
    {GL_BOOL, "bool", Parameter::BOOL},
    {GL_INT, "int", Parameter::POPUP},
    {GL_SAMPLER_2D, "sampler2D", Parameter::LAYER},
};

} // namespace

bool UniformType::takes(Parameter::Type parameterType) const {
    const ParameterTraits& given = TraitsOf(parameterType);
    const ParameterTraits& own = TraitsOf(type);
    if (own.isTexture())
        return parameterType == type;
    if (glType == GL_BOOL && given.components == 1) // OpenGL converts it
        return true;
    return own.content == given.content && own.components == given.components;
}

const UniformType* FindUniformType(GLenum glType) {
    const auto found = std::find_if(std::begin(s_UniformTypes), std::end(s_UniformTypes),
                                    [&](const UniformType& row) { return row.glType == glType; });
    return found == std::end(s_UniformTypes) ? nullptr : found;
}
