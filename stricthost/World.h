#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pictures/Picture.h"
#include "sdk/HostApi.h"

namespace stricthost {

// How a world is laid out in memory.
struct WorldShape {
    unsigned width = 0;  // pixels
    unsigned height = 0; // rows
    std::uint32_t format = 0;
    unsigned padding = 0;      // bytes after each row's pixels
    bool bottomUp = false;     // the last row is first in memory, so the stride is negative
    std::uint8_t guard = 0xA5; // value of the bytes outside the rows
};

// One picture in memory that a plug-in sees. Guard bytes surround it: before the first row, after the pixels
// of each row and after the last row. Not thread-safe.
class World {
public:
    // The pixels are uninitialised until Clear, Load or FillWithPattern is called. name: for messages.
    World(const WorldShape& shape, std::string name);
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    // The structure that the plug-in receives. Copies of it mean the same world, as they share its `data`.
    PF_EffectWorld& Def() { return m_Def; }
    const PF_EffectWorld& Def() const { return m_Def; }
    const std::string& Name() const { return m_Name; }
    std::uint32_t Format() const { return m_Shape.format; }
    unsigned Bits() const { return m_Bits; }
    const WorldShape& Shape() const { return m_Shape; }

    void Clear(); // transparent black
    // Copies the part of the picture that starts at (left, top) and has the size of this world; pixels
    // outside the picture become transparent. The picture must have this world's depth. Channels are
    // reordered where the world's format is not A, R, G, B.
    void Load(const fxhost::Picture& picture, std::ptrdiff_t left, std::ptrdiff_t top);
    // The pixels without padding, as A, R, G, B.
    fxhost::Picture ToPicture() const;

    // Fills every pixel with the pattern of this seed (see Pattern).
    void FillWithPattern(std::uint32_t seed);
    // The numbers, row by row from the top left, of the pixels that still hold that pattern.
    std::vector<std::uint32_t> FindPattern(std::uint32_t seed) const;

    // The place outside the rows where a guard byte changed, such as "after the pixels of row 3"; empty when
    // none did. Rows count from 0.
    std::string DamagedGuard() const;
    // Checksum of the pixels, which changes when somebody writes to them.
    std::uint64_t Checksum() const;

    // Row y from the top. Of a world without rows: the place where its pixels would be.
    std::uint8_t* Row(unsigned y) { return m_Pixels + RowOffset(y); }
    const std::uint8_t* Row(unsigned y) const { return m_Pixels + RowOffset(y); }
    std::size_t PixelBytes() const { return m_Bits / 2; }

private:
    std::size_t RowOffset(unsigned y) const {
        const unsigned last = m_Shape.height ? m_Shape.height - 1 : 0;
        return static_cast<std::size_t>(m_Shape.bottomUp ? last - y : y) * m_RowBytes;
    }
    std::size_t UsedRowBytes() const { return std::size_t{m_Shape.width} * PixelBytes(); }

    WorldShape m_Shape;
    std::string m_Name;
    unsigned m_Bits;
    std::size_t m_RowBytes;
    std::size_t m_Size;
    std::unique_ptr<std::uint8_t[]> m_Memory;
    std::uint8_t* m_Pixels;
    PF_EffectWorld m_Def = {};
};

} // namespace stricthost
