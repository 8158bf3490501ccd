#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace stricthost {

// Pixel values that rendering does not produce, to find the pixels that a plug-in did not write: 16-bit
// values above 32768, floats that are not numbers, and for 8 bits a pattern that depends on position and
// seed.
class Pattern {
public:
    // bits: 8, 16 or 32 a channel, four channels a pixel.
    Pattern(unsigned bits, std::uint32_t seed) : m_Bits(bits), m_Seed(seed) {}

    void FillRow(std::uint8_t* row, unsigned width, unsigned y) const;
    // Appends the number in the picture, y * width + x, of each pixel that still holds the pattern.
    void FindInRow(const std::uint8_t* row, unsigned width, unsigned y,
                   std::vector<std::uint32_t>& found) const;

private:
    unsigned m_Bits;
    std::uint32_t m_Seed;
};

} // namespace stricthost
