#include "tests/imagelib/reference/Reference.h"

#include <cfenv>
#include <cmath>

namespace Reference {
namespace {

constexpr Colour s_White{1, 1, 1, 1};
constexpr Colour s_Black{1, 0, 0, 0};

Colour Plus(const Colour& pixel, float offset) {
    return {pixel.a + offset, pixel.r + offset, pixel.g + offset, pixel.b + offset};
}

bool IsDiffusion(int mode) {
    return mode >= 2 && mode <= 10;
}
bool IsOrdered(int mode) {
    return mode >= 12 && mode <= 14;
}

template <class Reduce>
void DiffuseWith(Picture& picture, const Matrix& matrix, bool serpentine, Reduce reduce) {
    int origin = 0;
    while (!(matrix.At(origin, 0) > 0))
        ++origin;
    for (int y = 0; y < picture.height; ++y) {
        const bool reversed = serpentine && y % 2 == 1;
        for (int i = 0; i < picture.width; ++i) {
            const int x = reversed ? picture.width - 1 - i : i;
            const Colour before = picture.At(x, y);
            const Colour after = reduce(before);
            picture.At(x, y) = after;
            const Colour error{before.a - after.a, before.r - after.r, before.g - after.g,
                               before.b - after.b};
            for (int row = 0; row < matrix.height && y + row < picture.height; ++row) {
                for (int column = row == 0 ? origin + 1 : 0; column < matrix.width; ++column) {
                    const float weight = matrix.At(column, row);
                    const int shift = column - origin;
                    if (!(weight > 0) || i + shift < 0 || i + shift >= picture.width)
                        continue;
                    Colour& target = picture.At(reversed ? x - shift : x + shift, y + row);
                    target.a += weight * error.a;
                    target.r += weight * error.r;
                    target.g += weight * error.g;
                    target.b += weight * error.b;
                }
            }
        }
    }
}

template <class Reduce>
void OrderedWith(Picture& picture, const Matrix& matrix, float strength, Reduce reduce) {
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const float offset = strength * matrix.At(x & (matrix.width - 1), y & (matrix.height - 1));
            picture.At(x, y) = reduce(Plus(picture.At(x, y), offset));
        }
    }
}

template <class Reduce>
void Run(Picture& picture, int mode, float strength, bool serpentine, Reduce reduce) {
    if (IsDiffusion(mode))
        DiffuseWith(picture, DiffusionMatrix(mode), serpentine, reduce);
    else if (IsOrdered(mode))
        OrderedWith(picture, BayerMatrix(mode), strength, reduce);
    else
        for (Colour& pixel : picture.pixels)
            pixel = reduce(pixel);
}

} // namespace

int Nearest(const Colour& pixel, const Palette& palette) {
    float best = 1000000.0f;
    int nearest = 0;
    const int count = static_cast<int>(palette.size());
    for (int i = 0; i < count; ++i) {
        const Colour& entry = palette[static_cast<std::size_t>(i)];
        const float a = pixel.a - entry.a, r = pixel.r - entry.r, g = pixel.g - entry.g,
                    b = pixel.b - entry.b;
        const float distance = ((a * a + r * r) + g * g) + b * b;
        if (distance < best) {
            best = distance;
            nearest = i;
        }
    }
    return nearest;
}

void MapNearest(Picture& picture, const Palette& palette) {
    for (Colour& pixel : picture.pixels)
        pixel = palette[static_cast<std::size_t>(Nearest(pixel, palette))];
}

void Diffuse(Picture& picture, const Matrix& matrix, const Palette& palette, bool serpentine) {
    DiffuseWith(picture, matrix, serpentine, [&](const Colour& pixel) {
        return palette[static_cast<std::size_t>(Nearest(pixel, palette))];
    });
}

void MapOrdered(Picture& picture, const Matrix& matrix, const Palette& palette, float strength) {
    OrderedWith(picture, matrix, strength, [&](const Colour& pixel) {
        return palette[static_cast<std::size_t>(Nearest(pixel, palette))];
    });
}

std::vector<std::uint8_t> ToBytes(const Picture& picture) {
    std::vector<std::uint8_t> bytes;
    const auto add = [&](float value) {
        const float rounded = std::nearbyint(value * 255.0f); // ties to even
        bytes.push_back(rounded >= 255 ? 255 : rounded > 0 ? static_cast<std::uint8_t>(rounded) : 0);
    };
    for (const Colour& pixel : picture.pixels) {
        add(pixel.r);
        add(pixel.g);
        add(pixel.b);
        add(pixel.a);
    }
    return bytes;
}

void Quantize(Picture& picture, unsigned selector, int mode, float threshold, bool serpentine) {
    if (mode != 0 && !IsDiffusion(mode) && !IsOrdered(mode))
        return;
    if (selector == 1) {
        Run(picture, mode, threshold, serpentine,
            [&](const Colour& pixel) { return pixel.r > threshold ? s_White : s_Black; });
        return;
    }
    Palette palette;
    if (selector >= 2 && selector <= 7) {
        const unsigned count = 4u << (selector - 1);
        palette = OctreePalette(ToBytes(picture), count);
        palette.resize(count, Colour{0, 0, 0, 0});
    } else if (selector >= 9 && selector <= 21) {
        palette = FixedPalette(static_cast<int>(selector) - 8);
    } else {
        return;
    }
    Run(picture, mode, threshold, serpentine,
        [&](const Colour& pixel) { return palette[static_cast<std::size_t>(Nearest(pixel, palette))]; });
}

} // namespace Reference
