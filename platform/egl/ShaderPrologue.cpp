#include "platform/ShaderPrologue.h"

#include <string_view>

namespace {

// Parts of the names of all functions that the extension adds to fragment shaders, such as texture2DLod. On
// macOS they need no extension.
constexpr std::string_view s_ExtensionNames[] = {"Lod", "GradARB"};

} // namespace

const char* PlatformShaderPrologue(const std::string& source) {
    for (const std::string_view name : s_ExtensionNames)
        if (source.find(name) != std::string::npos)
            return "#extension GL_ARB_shader_texture_lod : enable\n";
    return "";
}
