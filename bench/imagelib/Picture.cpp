#include "bench/imagelib/Picture.h"

#include <algorithm>
#include <cmath>
#include <fstream>

namespace {

struct Rgb {
    float r, g, b;
};

Rgb Mix(const Rgb& from, const Rgb& to, float t) {
    return {from.r + (to.r - from.r) * t, from.g + (to.g - from.g) * t, from.b + (to.b - from.b) * t};
}

float Smooth(float low, float high, float x) {
    const float t = std::clamp((x - low) / (high - low), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

float Hash(int x, int y, int seed) {
    auto h = static_cast<unsigned>(x) * 374761393u + static_cast<unsigned>(y) * 668265263u +
             static_cast<unsigned>(seed) * 2246822519u;
    h = (h ^ h >> 13) * 1274126177u;
    return static_cast<float>((h ^ h >> 16) >> 8) / 16777216.0f;
}

float ValueNoise(float x, float y, int seed) {
    const float left = std::floor(x), top = std::floor(y);
    const int ix = static_cast<int>(left), iy = static_cast<int>(top);
    const float tx = Smooth(0, 1, x - left), ty = Smooth(0, 1, y - top);
    const float above = Hash(ix, iy, seed) + (Hash(ix + 1, iy, seed) - Hash(ix, iy, seed)) * tx;
    const float below = Hash(ix, iy + 1, seed) + (Hash(ix + 1, iy + 1, seed) - Hash(ix, iy + 1, seed)) * tx;
    return above + (below - above) * ty;
}

float Clouds(float x, float y, int octaves, int seed) {
    float sum = 0, weight = 0.5f;
    for (int i = 0; i < octaves; ++i, weight *= 0.55f) {
        sum += weight * ValueNoise(x, y, seed + i);
        x *= 2.03f;
        y *= 2.03f;
    }
    return sum;
}

// u and v are in units of the picture's height: 0..16/9 and 0..1.
Rgb Scene(float u, float v) {
    const Rgb zenith{0.13f, 0.29f, 0.62f}, haze{0.82f, 0.80f, 0.74f}, white{0.97f, 0.96f, 0.94f};
    Rgb colour = Mix(zenith, haze, Smooth(0.0f, 0.6f, v));
    colour = Mix(colour, white, 0.85f * Smooth(0.45f, 0.75f, Clouds(u * 3, v * 5, 7, 11)));
    const float ridge = 0.52f + 0.16f * Clouds(u * 2, 0.5f, 6, 31) - 0.08f;
    const Rgb rock = Mix({0.21f, 0.20f, 0.27f}, {0.55f, 0.47f, 0.42f}, Clouds(u * 14, v * 22, 6, 41));
    colour = Mix(colour, rock, Smooth(ridge - 0.002f, ridge + 0.002f, v));
    const float shore = 0.66f + 0.04f * Clouds(u * 4, 1.5f, 5, 53);
    const Rgb leaf = Mix({0.06f, 0.16f, 0.04f}, {0.45f, 0.60f, 0.16f}, Clouds(u * 40, v * 55, 5, 61));
    const Rgb autumn = Mix(leaf, {0.78f, 0.33f, 0.08f}, Smooth(0.5f, 0.7f, Clouds(u * 7, v * 9, 4, 71)));
    colour = Mix(colour, autumn, Smooth(shore - 0.004f, shore + 0.004f, v));
    const float sun = std::hypot(u - 1.35f, v - 0.2f);
    colour = Mix(colour, {1.0f, 0.93f, 0.72f}, 0.9f * (1 - Smooth(0.03f, 0.28f, sun)));
    const float ball = std::hypot(u - 0.45f, v - 0.78f) / 0.14f; // a glossy red ball in the grass
    const Rgb paint = Mix({0.90f, 0.10f, 0.10f}, {0.22f, 0.01f, 0.05f}, Smooth(0.1f, 1.0f, ball));
    const Rgb gloss = Mix(paint, white, 0.9f * (1 - Smooth(0.0f, 0.05f, std::hypot(u - 0.41f, v - 0.73f))));
    return Mix(gloss, colour, Smooth(0.985f, 1.015f, ball));
}

} // namespace

Reference::Picture MakePhoto(int width, int height) {
    Reference::Picture picture{width, height, {}};
    picture.pixels.reserve(static_cast<std::size_t>(width) * height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Rgb colour = Scene(static_cast<float>(x) / static_cast<float>(height),
                                     static_cast<float>(y) / static_cast<float>(height));
            const auto byte = [&](float value, int seed) {
                const float grain = (Hash(x, y, seed) + Hash(x, y, seed + 1) - 1) * 5.0f;
                return std::clamp(std::round(value * 255 + grain), 0.0f, 255.0f) / 255.0f;
            };
            picture.pixels.push_back({1.0f, byte(colour.r, 101), byte(colour.g, 103), byte(colour.b, 105)});
        }
    }
    return picture;
}

bool WritePpm(const Reference::Picture& picture, const std::string& file) {
    std::ofstream out(file, std::ios::binary);
    out << "P6\n" << picture.width << ' ' << picture.height << "\n255\n";
    const std::vector<std::uint8_t> bytes = Reference::ToBytes(picture);
    for (std::size_t i = 0; i < bytes.size(); i += 4)
        out.write(reinterpret_cast<const char*>(&bytes[i]), 3);
    return static_cast<bool>(out.flush());
}
