#pragma once

#include <cstdint>

class Texture;

// The texture that a script means by a handle: a parameter stands for its texture (the current sequence's
// copy of the parameter first), a render target for itself, any other handle for a texture of that name.
// Texture::invalid when there is none.
Texture& ResolveTexture(std::uint32_t handle);

// The GL texture name behind a handle given to a sampler uniform; 0 when there is none.
std::uint32_t TextureNameOf(std::uint32_t handle);
