#pragma once

#include <cstdint>
#include <string>

#include "standalone/stricthost/StrictHost.h"

// The probe effects, in bundles, and what they must make of a picture.
namespace probe {

// Host indices of the probe's parameters.
enum : std::size_t { Amount = 1, Reach = 2, Grow = 3 };

std::string Bundle(const char* name); // "probe" or "probe_resizing"
stricthost::Options Options(stricthost::Personality personality);

// Channels of any value within the depth's range, the same for the same seed.
fxhost::Picture Noise(unsigned width, unsigned height, unsigned depth, std::uint32_t seed);

// The input with the first `reach` columns turned to their negative by `amount` (0 or 1), inside a border of
// `grow` transparent pixels; a negative border cuts the input.
fxhost::Picture Expected(const fxhost::Picture& input, bool amount, unsigned reach, int grow);

// "" when the pictures agree, or what differs first. Integers must be equal; floats nearly.
std::string Difference(const fxhost::Picture& got, const fxhost::Picture& expected);

} // namespace probe
