#pragma once

#include <cstdint>

class Texture;

// Returns the texture to which a script refers by a handle, or null. A parameter refers to its texture (the
// current sequence's copy of the parameter comes first), a render target to itself, and any other handle to
// the texture with that handle.
Texture* ResolveTexture(std::uint32_t handle);

// Returns the GL name of the texture to which a handle refers, for a sampler uniform; 0 when there is none.
std::uint32_t TextureNameOf(std::uint32_t handle);

// Reports why a native function could not make or fill a texture. Does nothing when it could.
void ReportProblem(const char* function, const Texture& texture);
