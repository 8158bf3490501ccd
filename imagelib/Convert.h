#pragma once

#include "imagelib/Surface.h"

// Four-channel host rows to and from float surfaces. The channel order alpha, red, green, blue stays as it
// is. 8-bit channels are v / 255 and 16-bit ones v / 65535, alpha included; on the way back they are
// multiplied in single precision, rounded to nearest with ties to even, and clamped (NaN gives 0). 32-bit
// floats are copied.
namespace ImageLib {

// Whether rows of that many bits per channel can be converted: 8, 16 and 32.
bool IsConvertibleDepth(unsigned depth);

// Reads width x height pixels of 4 * depth bits from `pixels`, which holds `bytes` bytes and needs no
// alignment, into a new surface that owns its pixels. stride: bytes from row to row, no less than a row.
// False, and the surface is left alone, when the depth is not convertible, a size is 0, the stride is shorter
// than a row, or `bytes` is less than height * stride. Throws std::bad_alloc.
bool LoadSurface(const void* pixels, std::size_t bytes, std::uint32_t width, std::uint32_t height,
                 unsigned depth, std::size_t stride, Surface<Pixel32>& surface);

// Writes the surface's pixels back; bytes between the rows stay as they are. False, and nothing is written,
// for the same reasons.
bool StoreSurface(const Surface<Pixel32>& surface, void* pixels, std::size_t bytes, unsigned depth,
                  std::size_t stride);

// The tightly packed 8-bit copy that the octree counts: red, green, blue, alpha. bytes: room for
// width * height * 4.
void StoreRGBA8(const Surface<Pixel32>& surface, std::uint8_t* bytes);

} // namespace ImageLib
