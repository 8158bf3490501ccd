#include "platform/ShaderPrologue.h"

const char* PlatformShaderPrologue(const std::string&) {
    return "";
}
