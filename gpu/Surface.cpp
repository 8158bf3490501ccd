#include "gpu/Surface.h"

#include <algorithm>

#include "gpu/PixelDepth.h"

Surface Surface::invalid;

bool Surface::init(unsigned width, unsigned height, unsigned depth, bool flag) {
    m_Width = width;
    m_Height = height;
    m_Depth = depth;
    m_Flag = flag;
    m_Stride = PixelDepth::RowBytes(width, depth);
    return true;
}

void Surface::grabPixels(const void* pixels, unsigned width, unsigned height, unsigned depth,
                         std::ptrdiff_t stride, bool copy, bool flag) {
    m_Width = width;
    m_Height = height;
    m_Depth = depth;
    m_Stride = static_cast<std::uint64_t>(std::max<std::ptrdiff_t>(stride, 0));
    m_Flag = flag;
    const auto* first = static_cast<const unsigned char*>(pixels);
    if (pixels && copy)
        m_Pixels.assign(first, first + height * m_Stride);
    else
        m_ExternalPixels = const_cast<unsigned char*>(first);
}

const unsigned char* Surface::pixels() const {
    if (m_ExternalPixels)
        return m_ExternalPixels;
    const bool isWhole = m_Stride == 0 || m_Pixels.size() / m_Stride >= m_Height;
    return isWhole ? m_Pixels.data() : nullptr;
}

unsigned char* Surface::pixels() {
    return const_cast<unsigned char*>(static_cast<const Surface&>(*this).pixels());
}
