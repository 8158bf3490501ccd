#pragma once

#include "parameters/Parameter.h"
#include "platform/GL.h"

// A GLSL type that the engine can set uniforms of.
struct UniformType {
    GLenum glType;
    const char* name;     // in GLSL
    Parameter::Type type; // of the uniform's record, unless a parameter of the effect has the same name

    // True when the value of a parameter of that type reaches a uniform of this one.
    bool takes(Parameter::Type parameterType) const;
};

// Null for the types that the engine does not set: matrices, integer vectors, other samplers.
const UniformType* FindUniformType(GLenum glType);
