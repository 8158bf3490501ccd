#pragma once

#include "imagelib/Surface.h"

// Conversion between four-channel rows of integers or floats and float surfaces. The channel order alpha,
// red, green, blue does not change. An 8-bit channel v is v / 255 and a 16-bit channel is v / 65535, alpha
// included. The conversion back multiplies in single precision, rounds to nearest with ties to even, and
// clamps; NaN gives 0. 32-bit floats are copied. Thread-safe for different surfaces.
namespace ImageLib {

// True when rows with that many bits per channel can be converted: 8, 16 and 32.
bool IsConvertibleDepth(unsigned depth);

// Converts width x height pixels of 4 * depth bits into a new surface that owns its pixels. pixels: `bytes`
// bytes of any alignment, top row first. stride: bytes from row to row, at least the length of a row. Returns
// false and leaves the surface unchanged when the depth is not convertible, a size is 0, the stride is too
// short, or `bytes` is less than height * stride. Throws std::bad_alloc.
bool LoadSurface(const void* pixels, std::size_t bytes, std::uint32_t width, std::uint32_t height,
                 unsigned depth, std::size_t stride, Surface<Pixel32>& surface);

// Converts the surface into rows with the same meaning of `pixels`, `bytes`, `depth` and `stride`. Bytes
// between the rows keep their values. Returns false and writes nothing for the reasons given for LoadSurface.
bool StoreSurface(const Surface<Pixel32>& surface, void* pixels, std::size_t bytes, unsigned depth,
                  std::size_t stride);

// Writes the 8-bit pixels that the octree counts, tightly packed: red, green, blue, alpha. bytes: memory for
// width * height * 4 bytes.
void StoreRGBA8(const Surface<Pixel32>& surface, std::uint8_t* bytes);

} // namespace ImageLib
