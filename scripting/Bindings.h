#pragma once

#include <span>

#include "scripting/ScriptCall.h"

// The groups of native functions, each a constant table in the file of its name.
std::span<const NativeFunction> ParameterBindings();
std::span<const NativeFunction> RenderTargetBindings();
std::span<const NativeFunction> ShaderBindings();
std::span<const NativeFunction> TextureBindings();
std::span<const NativeFunction> SurfaceBindings();
std::span<const NativeFunction> SequenceBindings();
