#pragma once

#include <cstdint>

// The pixel formats of four channels that hosts and effects exchange, with the codes that the hosts use for
// them. The published headers name only some of these codes, so this header depends on none of them and stays
// in use when the vendor's SDK replaces the other headers of this folder.
namespace PixelFormats {

// A code is four characters; the first one is the least significant byte.
constexpr std::uint32_t Code(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 3; i >= 0; --i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

// 8 bits per channel, 0..255. X marks an alpha channel that the host ignores.
constexpr std::uint32_t Argb8 = Code("argb"); // 0x62677261, both hosts
constexpr std::uint32_t Xrgb8 = Code("xrgb"); // 0x62677278
constexpr std::uint32_t Bgra8 = Code("bgra"); // 0x61726762
// 16 bits per channel, 0..32768.
constexpr std::uint32_t AfterEffectsArgb16 = Code("ae16"); // 0x36316561
constexpr std::uint32_t Argb16 = Code("Argb");             // 0x62677241
constexpr std::uint32_t Xrgb16 = Code("Xrgb");             // 0x62677258
constexpr std::uint32_t Bgra16 = Code("Bgra");             // 0x61726742
// 32-bit floats, nominally 0..1.
constexpr std::uint32_t AfterEffectsArgb32 = Code("ae32"); // 0x32336561
constexpr std::uint32_t Argb32 = Code("ARgb");             // 0x62675241
constexpr std::uint32_t Xrgb32 = Code("XRgb");             // 0x62675258
constexpr std::uint32_t Bgra32 = Code("BGra");             // 0x61724742
// No format; hosts answer with it when they do not know a world.
constexpr std::uint32_t Invalid = Code("badf"); // 0x66646162

// Order of the four channels of a pixel in memory.
enum class ChannelOrder { AlphaFirst, AlphaLast }; // A R G B; B G R A

struct Row {
    std::uint32_t code;
    int bits; // per channel
    ChannelOrder order;
};

// The formats of After Effects come first, one for each depth.
constexpr Row Table[] = {
    {Argb8, 8, ChannelOrder::AlphaFirst},
    {AfterEffectsArgb16, 16, ChannelOrder::AlphaFirst},
    {AfterEffectsArgb32, 32, ChannelOrder::AlphaFirst},
    {Xrgb8, 8, ChannelOrder::AlphaFirst},
    {Bgra8, 8, ChannelOrder::AlphaLast},
    {Argb16, 16, ChannelOrder::AlphaFirst},
    {Xrgb16, 16, ChannelOrder::AlphaFirst},
    {Bgra16, 16, ChannelOrder::AlphaLast},
    {Argb32, 32, ChannelOrder::AlphaFirst},
    {Xrgb32, 32, ChannelOrder::AlphaFirst},
    {Bgra32, 32, ChannelOrder::AlphaLast},
};

// The row of a code; null for a code that is not in the table.
constexpr const Row* Find(std::uint32_t code) {
    for (const Row& row : Table)
        if (row.code == code)
            return &row;
    return nullptr;
}

// Bits per channel of a code: 8, 16, 32, or 0 for a code that is not in the table.
constexpr int BitsOf(std::uint32_t code) {
    const Row* row = Find(code);
    return row ? row->bits : 0;
}

} // namespace PixelFormats
