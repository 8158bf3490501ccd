#include "tests/imagelib/Pictures.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>

namespace Pictures {
namespace {

using Random = std::mt19937;

float Uniform(Random& random, float low, float high) {
    return low + (high - low) * static_cast<float>(random() >> 8) / 16777216.0f;
}

Reference::Colour PhotoPixel(Random& random, int x, int y) {
    const auto channel = [&](float phase) {
        const float wave =
            std::sin(static_cast<float>(x) * 0.11f + phase) * std::cos(static_cast<float>(y) * 0.07f);
        const float byte = std::floor((wave * 0.4f + 0.5f) * 255.0f + Uniform(random, -6.0f, 6.0f));
        return std::fmin(std::fmax(byte, 0.0f), 255.0f) / 255.0f;
    };
    return {1.0f, channel(0.0f), channel(1.3f), channel(2.9f)};
}

Reference::Colour WildPixel(Random& random) {
    return {Uniform(random, -1, 2), Uniform(random, -1, 2), Uniform(random, -1, 2), Uniform(random, -1, 2)};
}

Reference::Colour TiePixel(Random& random) {
    const Reference::Palette palette = Reference::FixedPalette(1 + static_cast<int>(random() % 13));
    const Reference::Colour one = palette[random() % palette.size()],
                            two = palette[random() % palette.size()];
    const float alpha = random() % 4 ? 1.0f : 0.5f;
    return {alpha, (one.r + two.r) / 2, (one.g + two.g) / 2, (one.b + two.b) / 2};
}

// The midpoint of two palette entries, moved at a right angle to the line between them.
Reference::Colour DistantPixel(Random& random) {
    const Reference::Palette palette = Reference::FixedPalette(1 + static_cast<int>(random() % 13));
    const Reference::Colour one = palette[random() % palette.size()],
                            two = palette[random() % palette.size()];
    const float r = one.r - two.r, g = one.g - two.g, b = one.b - two.b;
    const float reach = std::exp2(Uniform(random, -3, 8));
    const float x = Uniform(random, -reach, reach), y = Uniform(random, -reach, reach),
                z = Uniform(random, -reach, reach);
    return {random() % 4 ? 1.0f : Uniform(random, -reach, reach), (one.r + two.r) / 2 + (g * z - b * y),
            (one.g + two.g) / 2 + (b * x - r * z), (one.b + two.b) / 2 + (r * y - g * x)};
}

float HostileChannel(Random& random) {
    using Limits = std::numeric_limits<float>;
    constexpr float none = Limits::quiet_NaN(), endless = Limits::infinity(), most = Limits::max();
    static const float s_Values[] = {none,  endless, -endless, most,  -most, Limits::denorm_min(),
                                     -0.0f, 1000.0f, -999.5f,  1e10f, 1.5f,  -0.5f};
    return random() % 8 ? Uniform(random, 0, 1) : s_Values[random() % std::size(s_Values)];
}

Reference::Colour HostilePixel(Random& random) {
    const float alpha = random() % 8 ? 1.0f : HostileChannel(random);
    return {alpha, HostileChannel(random), HostileChannel(random), HostileChannel(random)};
}

Reference::Colour MakePixel(Kind kind, Random& random, int x, int y) {
    return kind == Kind::Photo     ? PhotoPixel(random, x, y)
           : kind == Kind::Wild    ? WildPixel(random)
           : kind == Kind::Ties    ? TiePixel(random)
           : kind == Kind::Distant ? DistantPixel(random)
                                   : HostilePixel(random);
}

} // namespace

Reference::Picture Make(Kind kind, int width, int height) {
    Random random(static_cast<unsigned>(kind) * 7919u + static_cast<unsigned>(width * 131 + height));
    Reference::Picture picture{width, height, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.pixels.push_back(MakePixel(kind, random, x, y));
    return picture;
}

const char* Name(Kind kind) {
    static const char* const s_Names[] = {"photo", "wild", "ties", "distant", "hostile"};
    return s_Names[static_cast<int>(kind)];
}

ImageLib::Surface<ImageLib::Pixel32> ToSurface(const Reference::Picture& picture) {
    ImageLib::Surface<ImageLib::Pixel32> surface(static_cast<unsigned>(picture.width),
                                                 static_cast<unsigned>(picture.height));
    if (!picture.pixels.empty())
        std::memcpy(surface.Row(0), picture.pixels.data(), picture.pixels.size() * sizeof(Reference::Colour));
    return surface;
}

std::string Difference(const ImageLib::Surface<ImageLib::Pixel32>& actual,
                       const Reference::Picture& expected) {
    for (int y = 0; y < expected.height; ++y) {
        for (int x = 0; x < expected.width; ++x) {
            const ImageLib::Pixel32& got = actual.Row(static_cast<unsigned>(y))[x];
            const Reference::Colour& want = expected.At(x, y);
            if (std::memcmp(&got, &want, sizeof got) == 0)
                continue;
            std::ostringstream text;
            text << "at (" << x << ", " << y << ") got " << got.alpha << ' ' << got.red << ' ' << got.green
                 << ' ' << got.blue << ", expected " << want.a << ' ' << want.r << ' ' << want.g << ' '
                 << want.b;
            return text.str();
        }
    }
    return {};
}

} // namespace Pictures
