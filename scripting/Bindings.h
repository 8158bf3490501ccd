#pragma once

#include <span>

#include "scripting/NativeFunction.h"

// The groups of native functions. Each is a constant table in the source file of the same name.
std::span<const NativeFunction> ParameterBindings();
std::span<const NativeFunction> RenderTargetBindings();
std::span<const NativeFunction> ShaderBindings();
std::span<const NativeFunction> TextureBindings();
std::span<const NativeFunction> SurfaceBindings();
std::span<const NativeFunction> SequenceBindings();
