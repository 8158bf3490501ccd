#pragma once

#include <cstdint>
#include <string>

#include "stricthost/StrictHost.h"

// The probe effects, in bundles, and what they must make of a picture.
namespace probe {

using stricthost::Instance;
using stricthost::Personality;

// Host indices of the probe's parameters.
enum : std::size_t { Amount = 1, Reach = 2, Grow = 3 };

inline constexpr struct {
    const char* name;
    Personality personality;
} Personalities[] = {{"After Effects, smart", Personality::AfterEffects},
                     {"After Effects, plain", Personality::AfterEffectsPlain},
                     {"Premiere Pro", Personality::Premiere}};

// A host that has set a bundle up: "probe" or "probe_resizing". At its end the plug-in must not have done
// anything against the rules.
class Host : public stricthost::StrictHost {
public:
    // bgra: as in stricthost::Quirks.
    Host(const char* name, Personality personality, bool bgra = false);
    ~Host();
    // An instance as it is first shown, set to turn the first `reach` columns to their negative.
    Instance& Apply(unsigned width, unsigned height, unsigned reach);
};

// Channels of any value within the depth's range, the same for the same seed.
fxhost::Picture Noise(unsigned width, unsigned height, unsigned depth, std::uint32_t seed);

// The input with the first `reach` columns turned to their negative, inside a border of `grow` transparent
// pixels; a negative border cuts the input.
fxhost::Picture Expected(const fxhost::Picture& input, unsigned reach, int grow = 0);

// "" when a frame is what it must be, or what differs first. Integers must be equal; floats nearly.
std::string Difference(const stricthost::FrameResult& got, const fxhost::Picture& expected);

} // namespace probe
