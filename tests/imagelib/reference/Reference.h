#pragma once

#include <cstdint>
#include <vector>

// The reference implementation: a simple and slow reduction of colours, written from the definitions. It
// shares no code with imagelib. The tests compare results with it bit for bit, and the benchmark uses it as
// its baseline.
namespace Reference {

struct Colour {
    float a, r, g, b;
};

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Colour> pixels; // rows top to bottom, tightly packed

    Colour& At(int x, int y) { return pixels[static_cast<std::size_t>(y) * width + x]; }
    const Colour& At(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
};

using Palette = std::vector<Colour>;

// The fixed palette with the number 1..13.
Palette FixedPalette(int number);

// A weight matrix, row by row from the top.
struct Matrix {
    int width;
    int height;
    std::vector<float> weights;

    float At(int x, int y) const { return weights[static_cast<std::size_t>(y) * width + x]; }
};
Matrix DiffusionMatrix(int mode); // 2..10
Matrix BayerMatrix(int mode);     // 12..14

int Nearest(const Colour& pixel, const Palette& palette);
void MapNearest(Picture& picture, const Palette& palette);
void Diffuse(Picture& picture, const Matrix& matrix, const Palette& palette, bool serpentine);
void MapOrdered(Picture& picture, const Matrix& matrix, const Palette& palette, float strength);

// The octree's palette, without empty slots. pixels: red, green, blue and an ignored byte each.
Palette OctreePalette(const std::vector<std::uint8_t>& pixels, unsigned colourCount);
std::vector<std::uint8_t> ToBytes(const Picture& picture);

// The reduction as a whole. selector and mode have the values of ImageLib::Quantize; others change nothing.
void Quantize(Picture& picture, unsigned selector, int mode, float threshold, bool serpentine);

} // namespace Reference
