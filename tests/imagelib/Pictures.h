#pragma once

#include "imagelib/Surface.h"
#include "tests/imagelib/reference/Reference.h"

#include <string>

// Deterministic test pictures. Each kind exercises the arithmetic in a different way.
namespace Pictures {

enum class Kind {
    Photo,   // smooth, noisy, opaque, channels n / 255
    Wild,    // all channels, alpha included, range well beyond 0..1
    Ties,    // palette colours and the midpoints between them
    Distant, // far from all colours, and equally far from two palette colours except for rounding
    Hostile, // NaN, infinities, huge and tiny values among ordinary ones
};
inline constexpr Kind s_All[] = {Kind::Photo, Kind::Wild, Kind::Ties, Kind::Distant, Kind::Hostile};

// width and height in pixels. The same arguments give the same picture.
Reference::Picture Make(Kind kind, int width, int height);
const char* Name(Kind kind);

ImageLib::Surface<ImageLib::Pixel32> ToSurface(const Reference::Picture& picture);

// Returns an empty text when the surface equals the picture bit for bit, else a description of the first
// difference.
std::string Difference(const ImageLib::Surface<ImageLib::Pixel32>& actual,
                       const Reference::Picture& expected);

} // namespace Pictures
