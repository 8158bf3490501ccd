#include "standalone/stricthost/World.h"

#include <algorithm>
#include <cstring>

#include "standalone/stricthost/PixelFormats.h"

namespace stricthost {

namespace {

constexpr std::size_t s_GuardBytes = 256; // a multiple of any pixel, so that rows without padding are aligned
constexpr std::uint8_t s_Guard = 0xA5;

std::uint32_t Mix(std::uint32_t value) {
    value ^= value >> 16;
    value *= 0x7FEB352D;
    value ^= value >> 15;
    value *= 0x846CA68B;
    return value ^ (value >> 16);
}

// The pattern's value for one pixel, which fills the pixel as often as it fits.
std::uint32_t PatternWord(unsigned bits, unsigned x, unsigned y, std::uint32_t seed) {
    const std::uint32_t hash = Mix(Mix(x + 0x9E3779B9u * y) + seed);
    switch (bits) {
    case 16:
        return hash | 0x80018001; // two channels beyond white
    case 32:
        return 0x7FC00001 | (hash & 0x3FFFFF); // not a number
    default:
        return hash;
    }
}

bool IsFilledWith(const std::uint8_t* pixel, std::size_t bytes, std::uint32_t word) {
    for (std::size_t i = 0; i < bytes; i += sizeof word) {
        std::uint32_t value;
        std::memcpy(&value, pixel + i, sizeof value);
        if (value != word)
            return false;
    }
    return true;
}

bool AllGuard(const std::uint8_t* begin, std::size_t count) {
    return std::all_of(begin, begin + count, [](std::uint8_t byte) { return byte == s_Guard; });
}

} // namespace

World::World(const WorldShape& shape, std::string name)
    : m_Shape(shape), m_Name(std::move(name)), m_Bits(FormatBits(shape.format)),
      m_RowBytes(UsedRowBytes() + shape.padding),
      m_Memory(2 * s_GuardBytes + m_RowBytes * shape.height, s_Guard),
      m_Pixels(m_Memory.data() + s_GuardBytes) {
    m_Def.data = reinterpret_cast<PF_PixelPtr>(m_Pixels);
    m_Def.rowbytes = static_cast<A_long>(m_RowBytes);
    m_Def.width = static_cast<A_long>(shape.width);
    m_Def.height = static_cast<A_long>(shape.height);
    m_Def.extent_hint = {0, 0, m_Def.width, m_Def.height};
    m_Def.pix_aspect_ratio = {1, 1};
    m_Def.world_flags = m_Bits == 16 ? PF_WorldFlag_DEEP : 0;
    Clear();
}

void World::Clear() {
    for (unsigned y = 0; y < m_Shape.height; ++y)
        std::memset(Row(y), 0, UsedRowBytes());
}

void World::Load(const fxhost::Picture& picture, long left, long top) {
    const long x0 = std::max(0l, -left);
    const long x1 = std::min<long>(m_Shape.width, static_cast<long>(picture.width) - left);
    for (long y = 0; y < static_cast<long>(m_Shape.height); ++y) {
        std::uint8_t* row = Row(static_cast<unsigned>(y));
        std::memset(row, 0, UsedRowBytes());
        const long from = y + top;
        if (from < 0 || from >= static_cast<long>(picture.height) || x1 <= x0)
            continue;
        const auto pixel = static_cast<long>(PixelBytes());
        std::memcpy(row + x0 * pixel, picture.Row(static_cast<unsigned>(from)) + (x0 + left) * pixel,
                    static_cast<std::size_t>((x1 - x0) * pixel));
    }
}

fxhost::Picture World::ToPicture() const {
    fxhost::Picture picture(m_Shape.width, m_Shape.height, m_Bits);
    for (unsigned y = 0; y < m_Shape.height; ++y)
        std::copy_n(Row(y), UsedRowBytes(), picture.Row(y));
    return picture;
}

void World::FillWithPattern(std::uint32_t seed) {
    for (unsigned y = 0; y < m_Shape.height; ++y) {
        std::uint8_t* pixel = Row(y);
        for (unsigned x = 0; x < m_Shape.width; ++x, pixel += PixelBytes()) {
            const std::uint32_t word = PatternWord(m_Bits, x, y, seed);
            for (std::size_t i = 0; i < PixelBytes(); i += sizeof word)
                std::memcpy(pixel + i, &word, sizeof word);
        }
    }
}

std::vector<std::uint32_t> World::FindPattern(std::uint32_t seed) const {
    std::vector<std::uint32_t> found;
    for (unsigned y = 0; y < m_Shape.height; ++y) {
        const std::uint8_t* pixel = Row(y);
        for (unsigned x = 0; x < m_Shape.width; ++x, pixel += PixelBytes())
            if (IsFilledWith(pixel, PixelBytes(), PatternWord(m_Bits, x, y, seed)))
                found.push_back(y * m_Shape.width + x);
    }
    return found;
}

bool World::GuardsIntact() const {
    for (unsigned y = 0; y < m_Shape.height; ++y)
        if (!AllGuard(Row(y) + UsedRowBytes(), m_Shape.padding))
            return false;
    return AllGuard(m_Memory.data(), s_GuardBytes) &&
           AllGuard(m_Memory.data() + m_Memory.size() - s_GuardBytes, s_GuardBytes);
}

std::uint64_t World::Checksum() const {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (unsigned y = 0; y < m_Shape.height; ++y) {
        const std::uint8_t* row = Row(y);
        for (std::size_t i = 0; i + 4 <= UsedRowBytes(); i += 4) {
            std::uint32_t word;
            std::memcpy(&word, row + i, 4);
            sum = (sum ^ word) * 0x100000001B3;
        }
    }
    return sum;
}

} // namespace stricthost
