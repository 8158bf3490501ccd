#pragma once

#include "imagelib/OctreeQuantEngine.h"
#include "imagelib/Palette.h"

namespace ImageLib {

// The colours that a pass chooses from. Either two colours on both sides of a threshold of red; or a palette,
// of which a pixel gets the colour with the smallest squared distance over all four channels, the lowest
// index on a tie, and entry 0 when no squared distance is below 1,000,000. Refers to colours that its
// quantizer owns.
struct ColourSet {
    const Pixel32* colours;
    unsigned count;   // 1..256
    bool byThreshold; // the first of the two kinds
    float threshold;  // colour 0 where red is greater, else colour 1
};

namespace Quantizers {

// Black and white: Pixel32::one where red is greater than the threshold, else Pixel32::alpha_zero.
class Bitmap {
public:
    explicit Bitmap(float threshold) : m_Threshold(threshold) {}
    ColourSet Colours() const;

private:
    float m_Threshold;
};

// An adaptive palette of N colours, made from a surface. When the picture has fewer colours, the remaining
// entries are (0, 0, 0, 0) and take part in the search. One at a time in the process.
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

// The fixed palette with the HWPalette value N.
template <unsigned N>
class PaletteQuant {
public:
    static_assert(N >= 1 && N <= s_HWPaletteCount);
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

// Builds a palette with the engine from an 8-bit copy of the surface. Throws std::bad_alloc.
void MakeOctreePalette(const Surface<Pixel32>& surface, unsigned colourCount, OctreeQuantEngine& engine);

template <unsigned N>
OctreeQuant<N>::OctreeQuant(const Surface<Pixel32>& surface) {
    MakeOctreePalette(surface, N, m_Engine);
}

} // namespace Quantizers
} // namespace ImageLib
