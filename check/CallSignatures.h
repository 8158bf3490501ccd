#pragma once

#include <span>
#include <vector>

namespace fxhost {

enum class ArgumentKind {
    Any,
    Number,
    Boolean, // true, false or a number
    Text,
    Handle, // of any kind, or 0
    Parameter,
    Shader,
    Target,      // a render target
    Image,       // a texture or a render target
    ImageSource, // a texture, a render target or a parameter with a texture
    Surface,
    TypeCode,         // a member of SV_Type
    ParameterValue,   // depends on the parameter in argument 1
    UniformValue,     // depends on the shader and the uniform in arguments 1 and 2
    Rectangle,        // an array of four numbers
    TextureParameter, // a member of SV_GL that names a parameter of a texture
    TextureValue,     // a member of SV_GL or a number
    Depth,            // bits per channel: 8, 16 or 32
};

struct CallArgument {
    const char* name;
    ArgumentKind kind;
};

// What a native function expects. The arguments after the first `required` ones are optional.
struct CallSignature {
    const char* function;
    std::vector<CallArgument> arguments;
    std::size_t required;
};

// All native functions that scripts can call.
std::span<const CallSignature> CallSignatures();

} // namespace fxhost
