#include "stricthost/Pattern.h"

#include <cstring>

namespace stricthost {

namespace {

std::uint32_t Mix(std::uint32_t value) {
    value ^= value >> 16;
    value *= 0x7FEB352D;
    value ^= value >> 15;
    value *= 0x846CA68B;
    return value ^ (value >> 16);
}

// The 32-bit words of a row. A word differs from pixel to pixel and is repeated to fill its pixel. The bits
// of Set are always one; the bits of Changing depend on position and seed.
template <unsigned WordsPerPixel, std::uint32_t Set, std::uint32_t Changing>
struct Row {
    std::uint32_t first;

    std::uint32_t Word(unsigned x) const { return Set | ((first + x * 0x9E3779B9) & Changing); }

    void Fill(std::uint8_t* row, unsigned width) const {
        for (unsigned x = 0; x < width; ++x) {
            const std::uint32_t word = Word(x);
            for (unsigned i = 0; i < WordsPerPixel; ++i)
                std::memcpy(row + (std::size_t{x} * WordsPerPixel + i) * 4, &word, 4);
        }
    }

    bool IsAt(const std::uint8_t* row, unsigned x) const {
        const std::uint32_t word = Word(x);
        std::uint32_t different = 0;
        for (unsigned i = 0; i < WordsPerPixel; ++i) {
            std::uint32_t value;
            std::memcpy(&value, row + (std::size_t{x} * WordsPerPixel + i) * 4, 4);
            different |= value ^ word;
        }
        return different == 0;
    }

    void Find(const std::uint8_t* row, unsigned width, std::uint32_t number,
              std::vector<std::uint32_t>& found) const {
        unsigned count = 0; // this loop is vectorised, and most rows contain no such pixel
        for (unsigned x = 0; x < width; ++x)
            count += IsAt(row, x) ? 1u : 0u;
        for (unsigned x = 0; count > 0; ++x) {
            if (!IsAt(row, x))
                continue;
            found.push_back(number + x);
            --count;
        }
    }
};

template <class Do>
void WithRow(unsigned bits, std::uint32_t seed, unsigned y, Do work) {
    const std::uint32_t first = Mix(Mix(y) + seed);
    switch (bits) {
    case 16: // two channels beyond white
        return work(Row<2, 0x80018001, 0xFFFFFFFF>{first});
    case 32: // not a number
        return work(Row<4, 0x7FC00001, 0x3FFFFF>{first});
    default:
        return work(Row<1, 0, 0xFFFFFFFF>{first});
    }
}

} // namespace

void Pattern::FillRow(std::uint8_t* row, unsigned width, unsigned y) const {
    WithRow(m_Bits, m_Seed, y, [&](const auto& words) { words.Fill(row, width); });
}

void Pattern::FindInRow(const std::uint8_t* row, unsigned width, unsigned y,
                        std::vector<std::uint32_t>& found) const {
    WithRow(m_Bits, m_Seed, y, [&](const auto& words) { words.Find(row, width, y * width, found); });
}

} // namespace stricthost
