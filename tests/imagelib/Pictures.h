#pragma once

#include "imagelib/Surface.h"
#include "tests/imagelib/model/Model.h"

#include <string>

// Deterministic pictures that try the arithmetic in different ways.
namespace Pictures {

enum class Kind {
    Photo,   // smooth, noisy, opaque, channels n / 255
    Wild,    // all channels, alpha too, well beyond 0..1
    Ties,    // colours of palettes and the middles between them
    Distant, // far from all colours, and equally far from two of a palette but for rounding
    Hostile, // NaN, infinities, huge and tiny values among ordinary ones
};
inline constexpr Kind kAll[] = {Kind::Photo, Kind::Wild, Kind::Ties, Kind::Distant, Kind::Hostile};

Model::Picture Make(Kind kind, int width, int height);
const char* Name(Kind kind);

ImageLib::Surface<ImageLib::Pixel32> ToSurface(const Model::Picture& picture);

// Empty when the surface holds the picture bit for bit, else the first pixel that differs, in words.
std::string Difference(const ImageLib::Surface<ImageLib::Pixel32>& actual, const Model::Picture& expected);

} // namespace Pictures
