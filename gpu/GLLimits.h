#pragma once

// What the OpenGL implementation can do. All functions need the engine's GL context to be current.
namespace GLLimits {

// The largest width and height of a texture, in pixels.
unsigned MaxTextureSize();

// True when the channels of a texture can be put in another order as they are read. Legacy contexts may lack
// it.
bool HasTextureSwizzle();

} // namespace GLLimits
