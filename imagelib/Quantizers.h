#pragma once

#include "imagelib/Octree.h"
#include "imagelib/Palette.h"

namespace ImageLib {

// What a dithering pass reduces to: either the two colours on both sides of a threshold of red, or the
// nearest of a palette's colours, by the squared distance over all four channels, the lowest index on a tie,
// entry 0 where none is nearer than 1000 units. Refers to colours that its quantizer owns.
struct ColourSet {
    const Pixel32* colours;
    unsigned count; // 1..256
    bool byThreshold;
    float threshold; // colour 0 where red is greater, else colour 1
};

namespace Quantizers {

// Pixel32::one where red is greater than the threshold, else Pixel32::alpha_zero.
class Bitmap {
public:
    explicit Bitmap(float threshold) : m_Threshold(threshold) {}
    ColourSet Colours() const;

private:
    float m_Threshold;
};

// An adaptive palette of N colours, made from a surface. The entries that a picture of few colours leaves
// over stay (0, 0, 0, 0) and take part in the search. One at a time in the process.
template <unsigned N>
class OctreeQuant {
public:
    static_assert(N >= 1 && N <= 256);
    // Throws std::bad_alloc.
    explicit OctreeQuant(const Surface<Pixel32>& surface);
    ColourSet Colours() const { return {m_Engine.Palette(), N, false, 0.0f}; }

private:
    OctreeQuantEngine m_Engine;
};

// The fixed palette of that HWPalette value.
template <unsigned N>
class PaletteQuant {
public:
    static_assert(N >= 1 && N <= HWPaletteCount);
    ColourSet Colours() const {
        return {GetPalette(static_cast<HWPalette>(N)), GetPaletteLen(static_cast<HWPalette>(N)), false, 0.0f};
    }
};

// Replaces every pixel by its colour of the set. May use several threads; throws std::bad_alloc.
void Process(Surface<Pixel32>& surface, const ColourSet& colours);
template <class Quantizer>
void Process(Surface<Pixel32>& surface, const Quantizer& quantizer) {
    Process(surface, quantizer.Colours());
}

// Runs the engine over the surface's 8-bit copy.
void MakeOctreePalette(const Surface<Pixel32>& surface, unsigned colourCount, OctreeQuantEngine& engine);

template <unsigned N>
OctreeQuant<N>::OctreeQuant(const Surface<Pixel32>& surface) {
    MakeOctreePalette(surface, N, m_Engine);
}

} // namespace Quantizers
} // namespace ImageLib
