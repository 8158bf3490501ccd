#include "stricthost/PixelFormats.h"

namespace stricthost {

unsigned FormatBits(std::uint32_t format) {
    return static_cast<unsigned>(PixelFormats::BitsOf(format));
}

bool IsBgra(std::uint32_t format) {
    const PixelFormats::Row* row = PixelFormats::Find(format);
    return row && row->order == PixelFormats::ChannelOrder::AlphaLast;
}

std::uint32_t FormatOfBits(unsigned bits) {
    for (const PixelFormats::Row& row : PixelFormats::Table)
        if (static_cast<unsigned>(row.bits) == bits)
            return row.code;
    return 0;
}

} // namespace stricthost
