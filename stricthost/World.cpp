#include "stricthost/World.h"

#include <algorithm>
#include <cstring>

#include "stricthost/Pattern.h"
#include "stricthost/PixelFormats.h"

namespace stricthost {

namespace {

constexpr std::size_t s_GuardBytes = 256; // a multiple of any pixel, so that rows without padding are aligned

// Turns A, R, G, B into B, G, R, A and back. Rows of any alignment.
void ReverseChannels(std::uint8_t* pixels, std::size_t count, std::size_t channelBytes) {
    for (std::uint8_t* pixel = pixels; count > 0; --count, pixel += 4 * channelBytes) {
        std::swap_ranges(pixel, pixel + channelBytes, pixel + 3 * channelBytes);
        std::swap_ranges(pixel + channelBytes, pixel + 2 * channelBytes, pixel + 2 * channelBytes);
    }
}

bool AllEqual(const std::uint8_t* begin, std::size_t count, std::uint8_t value) {
    return std::all_of(begin, begin + count, [value](std::uint8_t byte) { return byte == value; });
}

} // namespace

World::World(const WorldShape& shape, std::string name)
    : m_Shape(shape), m_Name(std::move(name)), m_Bits(FormatBits(shape.format)),
      m_RowBytes(UsedRowBytes() + shape.padding), m_Size(2 * s_GuardBytes + m_RowBytes * shape.height),
      m_Memory(std::make_unique_for_overwrite<std::uint8_t[]>(m_Size)),
      m_Pixels(m_Memory.get() + s_GuardBytes) {
    std::memset(m_Memory.get(), shape.guard, s_GuardBytes);
    std::memset(m_Memory.get() + m_Size - s_GuardBytes, shape.guard, s_GuardBytes);
    for (unsigned y = 0; y < shape.height; ++y)
        std::memset(Row(y) + UsedRowBytes(), shape.guard, shape.padding);
    m_Def.data = reinterpret_cast<PF_PixelPtr>(Row(0));
    m_Def.rowbytes = static_cast<A_long>(m_RowBytes) * (shape.bottomUp ? -1 : 1);
    m_Def.width = static_cast<A_long>(shape.width);
    m_Def.height = static_cast<A_long>(shape.height);
    m_Def.extent_hint = {0, 0, m_Def.width, m_Def.height};
    m_Def.pix_aspect_ratio = {1, 1};
    m_Def.world_flags = m_Bits == 16 ? PF_WorldFlag_DEEP : 0;
}

void World::Clear() {
    for (unsigned y = 0; y < m_Shape.height; ++y)
        std::memset(Row(y), 0, UsedRowBytes());
}

void World::Load(const fxhost::Picture& picture, std::ptrdiff_t left, std::ptrdiff_t top) {
    const std::ptrdiff_t width = m_Shape.width, height = m_Shape.height;
    const std::ptrdiff_t x0 = std::clamp(-left, std::ptrdiff_t{0}, width);
    const std::ptrdiff_t x1 = std::clamp(static_cast<std::ptrdiff_t>(picture.width) - left, x0, width);
    const auto bytes = [&](std::ptrdiff_t pixels) { return static_cast<std::size_t>(pixels) * PixelBytes(); };
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        std::uint8_t* const row = Row(static_cast<unsigned>(y));
        const std::ptrdiff_t from = y + top;
        if (from < 0 || from >= static_cast<std::ptrdiff_t>(picture.height) || x0 == x1) {
            std::memset(row, 0, bytes(width));
            continue;
        }
        std::memset(row, 0, bytes(x0));
        std::memcpy(row + bytes(x0), picture.Row(static_cast<unsigned>(from)) + bytes(x0 + left),
                    bytes(x1 - x0));
        std::memset(row + bytes(x1), 0, bytes(width - x1));
        if (IsBgra(m_Shape.format))
            ReverseChannels(row, m_Shape.width, m_Bits / 8);
    }
}

fxhost::Picture World::ToPicture() const {
    fxhost::Picture picture(m_Shape.width, m_Shape.height, 0); // its bytes follow
    picture.depth = m_Bits;
    picture.bytes.reserve(UsedRowBytes() * m_Shape.height);
    for (unsigned y = 0; y < m_Shape.height; ++y)
        picture.bytes.insert(picture.bytes.end(), Row(y), Row(y) + UsedRowBytes());
    if (IsBgra(m_Shape.format))
        ReverseChannels(picture.bytes.data(), std::size_t{m_Shape.width} * m_Shape.height, m_Bits / 8);
    return picture;
}

void World::FillWithPattern(std::uint32_t seed) {
    const Pattern pattern(m_Bits, seed);
    for (unsigned y = 0; y < m_Shape.height; ++y)
        pattern.FillRow(Row(y), m_Shape.width, y);
}

std::vector<std::uint32_t> World::FindPattern(std::uint32_t seed) const {
    const Pattern pattern(m_Bits, seed);
    std::vector<std::uint32_t> found;
    for (unsigned y = 0; y < m_Shape.height; ++y)
        pattern.FindInRow(Row(y), m_Shape.width, y, found);
    return found;
}

std::string World::DamagedGuard() const {
    if (!AllEqual(m_Memory.get(), s_GuardBytes, m_Shape.guard))
        return "before the first row";
    for (unsigned y = 0; y < m_Shape.height; ++y)
        if (!AllEqual(Row(y) + UsedRowBytes(), m_Shape.padding, m_Shape.guard))
            return "after the pixels of row " + std::to_string(y);
    return AllEqual(m_Memory.get() + m_Size - s_GuardBytes, s_GuardBytes, m_Shape.guard)
               ? ""
               : "after the last row";
}

std::uint64_t World::Checksum() const {
    // Sixteen independent sums, so that the processor need not wait for the previous step. Each step is
    // invertible, so a single changed word always changes the result.
    constexpr std::size_t sums = 16;
    std::uint32_t sum[sums] = {};
    const auto add = [](std::uint32_t& to, const std::uint8_t* from) {
        std::uint32_t word;
        std::memcpy(&word, from, sizeof word);
        to = (to ^ word) * 33;
    };
    const std::size_t words = UsedRowBytes() / 4;
    for (unsigned y = 0; y < m_Shape.height; ++y) {
        const std::uint8_t* const row = Row(y);
        std::size_t i = 0;
        for (; words - i >= sums; i += sums)
            for (std::size_t k = 0; k < sums; ++k)
                add(sum[k], row + (i + k) * 4);
        for (; i < words; ++i)
            add(sum[i % sums], row + i * 4);
    }
    std::uint64_t total = 0;
    for (const std::uint32_t part : sum)
        total = (total ^ part) * 0x100000001B3;
    return total;
}

} // namespace stricthost
