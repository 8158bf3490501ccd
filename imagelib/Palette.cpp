#include "imagelib/Palette.h"

#include <array>

namespace ImageLib {
namespace {

constexpr Pixel32 FromHex(std::uint32_t rgb) {
    return {1.0f, static_cast<float>(rgb >> 16 & 0xFF) / 255.0f, static_cast<float>(rgb >> 8 & 0xFF) / 255.0f,
            static_cast<float>(rgb & 0xFF) / 255.0f};
}

template <class... Hex>
constexpr std::array<Pixel32, sizeof...(Hex)> Colours(Hex... rgb) {
    return {FromHex(static_cast<std::uint32_t>(rgb))...};
}

// These primaries were measured. The 3-bit palette is the bright half of the 4-bit palette, with black in
// place of grey.
constexpr auto s_ThreeBitColours =
    Colours(0x000000, 0x0027FB, 0x00F92C, 0x00FCFE, 0xFF3016, 0xFF3FFC, 0xFFFD33, 0xFFFFFF);
constexpr auto s_FourBitColours =
    Colours(0x000000, 0x001290, 0x008F15, 0x009092, 0x9B1708, 0x9A2091, 0x949119, 0xB8B8B8, 0x686868,
            0x0027FB, 0x00F92C, 0x00FCFE, 0xFF3016, 0xFF3FFC, 0xFFFD33, 0xFFFFFF);
// Both greys of this machine look the same, so CCCCCC occurs twice.
constexpr auto s_AppleIIColours =
    Colours(0x000000, 0x722640, 0x40337F, 0xE434FE, 0x0E5940, 0xCCCCCC, 0x1B9AFE, 0xBFB3FF, 0x404C00,
            0xE46501, 0xCCCCCC, 0xF1A6BF, 0x1BCB01, 0xBFCC80, 0x8DD9BF, 0xFFFFFF);
constexpr auto s_Vic20Colours =
    Colours(0x000000, 0xFFFFFF, 0x8D3E37, 0x72C1C8, 0x80348B, 0x55A049, 0x40318D, 0xAAB95D, 0x8B5429,
            0xD59F74, 0xB86962, 0x87D6DD, 0xAA5FB6, 0x94E089, 0x8071CC, 0xBFCE72);
constexpr auto s_C64Colours =
    Colours(0x000000, 0xFFFFFF, 0x883932, 0x67B6BD, 0x8B3F96, 0x55A049, 0x40318D, 0xBFCE72, 0x8B5429,
            0x574200, 0xB86962, 0x505050, 0x787878, 0x94E089, 0x7869C4, 0x9F9F9F);
constexpr auto s_CGA4P1LColours = Colours(0x000000, 0x00AAAA, 0xAA00AA, 0xAAAAAA);
constexpr auto s_CGA4P1HColours = Colours(0x000000, 0x55FFFF, 0xFF55FF, 0xFFFFFF);
constexpr auto s_CGA4P2LColours = Colours(0x000000, 0x00AA00, 0xAA0000, 0xAA5500);
constexpr auto s_CGA4P2HColours = Colours(0x000000, 0x55FF55, 0xFF5555, 0xFFFF55);
constexpr auto s_CGA5LColours = Colours(0x000000, 0x00AAAA, 0xAA0000, 0xAAAAAA);
constexpr auto s_CGA5HColours = Colours(0x000000, 0x55FFFF, 0xFF5555, 0xFFFFFF);
constexpr auto s_EGAColours =
    Colours(0x000000, 0x0000AA, 0x00AA00, 0x00AAAA, 0xAA0000, 0xAA00AA, 0xAA5500, 0xAAAAAA, 0x555555,
            0x5555FF, 0x55FF55, 0x55FFFF, 0xFF5555, 0xFF55FF, 0xFFFF55, 0xFFFFFF);
// Entry 0 is the machine's transparent colour, which is shown as black.
constexpr auto s_MSXColours =
    Colours(0x000000, 0x000000, 0x3EB849, 0x74D07D, 0x5955E0, 0x8076F1, 0xB95E51, 0x65DBEF, 0xDB6559,
            0xFF897D, 0xCCC35E, 0xDED087, 0x3AA241, 0xB766B5, 0xCCCCCC, 0xFFFFFF);

struct PaletteRow {
    const Pixel32* colours = nullptr;
    unsigned count = 0;

    constexpr PaletteRow() = default;
    template <std::size_t N>
    constexpr PaletteRow(const std::array<Pixel32, N>& palette) : colours(palette.data()), count(N) {}
};

// Palettes in the order of HWPalette.
constexpr PaletteRow s_Palettes[] = {s_ThreeBitColours, s_FourBitColours, s_AppleIIColours, s_Vic20Colours,
                                     s_C64Colours,      s_CGA4P1LColours, s_CGA4P1HColours, s_CGA4P2LColours,
                                     s_CGA4P2HColours,  s_CGA5LColours,   s_CGA5HColours,   s_EGAColours,
                                     s_MSXColours};
static_assert(std::size(s_Palettes) == s_HWPaletteCount);

PaletteRow Find(HWPalette palette) {
    const unsigned index = static_cast<unsigned>(palette) - 1;
    return index < s_HWPaletteCount ? s_Palettes[index] : PaletteRow{};
}

} // namespace

const Pixel32* GetPalette(HWPalette palette) {
    return Find(palette).colours;
}

unsigned GetPaletteLen(HWPalette palette) {
    return Find(palette).count;
}

} // namespace ImageLib
