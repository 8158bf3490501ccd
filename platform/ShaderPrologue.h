#pragma once

#include <string>

// Returns the preprocessor lines that the platform's GLSL compiler needs before a shader that is written for
// macOS. Empty when it needs none. `source` is the shader. May be called from any thread.
const char* PlatformShaderPrologue(const std::string& source);
