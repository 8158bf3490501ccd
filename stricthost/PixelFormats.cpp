#include "stricthost/PixelFormats.h"

namespace stricthost {

namespace {

struct FormatRow {
    std::uint32_t code;
    unsigned bits;
};
constexpr FormatRow s_Formats[] = {
    {FormatArgb8, 8}, {FormatArgb16, 16}, {FormatArgb32, 32}, // After Effects
    {0x62677278, 8},  {0x62677258, 16},   {0x62677241, 16},   {0x62675241, 32},
    {0x62675258, 32}, {0x61726762, 8},    {0x61726742, 16},   {0x61724742, 32}, // Premiere Pro
};

} // namespace

unsigned FormatBits(std::uint32_t format) {
    for (const FormatRow& row : s_Formats)
        if (row.code == format)
            return row.bits;
    return 0;
}

std::uint32_t FormatOfBits(unsigned bits) {
    for (const FormatRow& row : s_Formats)
        if (row.bits == bits)
            return row.code;
    return 0;
}

} // namespace stricthost
