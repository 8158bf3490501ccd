#include <algorithm>
#include <cstdlib>

#include "tests/host/FakeHost.h"

namespace {
constexpr char s_Guard = 0x5A;
constexpr std::size_t s_Margin = 64;
} // namespace

FakeWorld::FakeWorld(A_long width, A_long height, int bits, A_long rowBytes) : m_Bits(bits) {
    if (rowBytes == 0)
        rowBytes = width * bits / 2;
    const std::size_t stride = static_cast<std::size_t>(std::abs(rowBytes));
    m_Bytes.assign(2 * s_Margin + stride * static_cast<std::size_t>(height), s_Guard);
    char* first = m_Bytes.data() + s_Margin;
    if (rowBytes < 0)
        first += stride * static_cast<std::size_t>(height - 1);
    world.data = reinterpret_cast<PF_PixelPtr>(first);
    world.rowbytes = rowBytes;
    world.width = width;
    world.height = height;
    world.pix_aspect_ratio = {1, 1};
}

const char* FakeWorld::Address(A_long x, A_long y, std::size_t channelBytes, int channel) const {
    return reinterpret_cast<const char*>(world.data) + static_cast<std::ptrdiff_t>(y) * world.rowbytes +
           (x * 4 + channel) * static_cast<std::ptrdiff_t>(channelBytes);
}

bool FakeWorld::PaddingIsIntact() const {
    std::vector<bool> isPixel(m_Bytes.size(), false);
    for (A_long y = 0; y < world.height; ++y) {
        const auto start = Address(0, y, 1, 0) - m_Bytes.data();
        std::fill_n(isPixel.begin() + start, world.width * m_Bits / 2, true);
    }
    for (std::size_t i = 0; i < m_Bytes.size(); ++i)
        if (!isPixel[i] && m_Bytes[i] != s_Guard)
            return false;
    return true;
}
