#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace ImageLib {

// One pixel or palette colour: four floats in the memory order alpha, red, green, blue, each nominally in
// 0..1. Values outside this range, infinities and NaN are allowed and kept.
struct Pixel32 {
    float alpha;
    float red;
    float green;
    float blue;

    bool operator==(const Pixel32&) const = default;

    static const Pixel32 one;        // 1, 1, 1, 1
    static const Pixel32 alpha_zero; // opaque black
};
static_assert(sizeof(Pixel32) == 16);

inline constexpr Pixel32 Pixel32::one{1.0f, 1.0f, 1.0f, 1.0f};
inline constexpr Pixel32 Pixel32::alpha_zero{1.0f, 0.0f, 0.0f, 0.0f};

// An image with its top row first. A surface either owns its pixels or wraps memory that the caller keeps
// valid. It can be moved, not copied; a moved-from surface is empty. Not synchronised: one thread may write,
// or many may read.
template <class T>
class Surface {
public:
    constexpr Surface() = default;

    // Owns width * height tightly packed pixels, whose values are not initialised. Throws std::bad_alloc.
    Surface(std::uint32_t width, std::uint32_t height)
        : m_Width(width), m_Height(height), m_Stride(std::size_t{width} * sizeof(T)),
          m_Pixels(new T[std::size_t{width} * height]), m_OwnsPixels(true) {}

    // Wraps pixels of the caller. stride: bytes from row to row, a multiple of the alignment of T.
    constexpr Surface(std::uint32_t width, std::uint32_t height, std::size_t stride, T* pixels)
        : m_Width(width), m_Height(height), m_Stride(stride), m_Pixels(pixels) {}

    constexpr virtual ~Surface() {
        if (m_OwnsPixels && m_Pixels)
            delete[] m_Pixels;
    }

    Surface(Surface&& other) noexcept { Swap(other); }
    Surface& operator=(Surface&& other) noexcept {
        Surface(std::move(other)).Swap(*this);
        return *this;
    }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    std::uint32_t Width() const { return m_Width; }
    std::uint32_t Height() const { return m_Height; }
    std::size_t Stride() const { return m_Stride; } // bytes from row to row
    std::uint32_t Depth() const { return m_Depth; } // bits per channel
    bool OwnsPixels() const { return m_OwnsPixels; }
    bool IsEmpty() const { return m_Width == 0 || m_Height == 0 || !m_Pixels; }

    // The first pixel of row y, 0..Height() - 1.
    T* Row(std::uint32_t y) {
        return reinterpret_cast<T*>(reinterpret_cast<unsigned char*>(m_Pixels) + y * m_Stride);
    }
    const T* Row(std::uint32_t y) const { return const_cast<Surface*>(this)->Row(y); }

private:
    void Swap(Surface& other) noexcept {
        std::swap(m_Width, other.m_Width);
        std::swap(m_Height, other.m_Height);
        std::swap(m_Stride, other.m_Stride);
        std::swap(m_Depth, other.m_Depth);
        std::swap(m_Pixels, other.m_Pixels);
        std::swap(m_OwnsPixels, other.m_OwnsPixels);
    }

    std::uint32_t m_Width = 0;
    std::uint32_t m_Height = 0;
    std::size_t m_Stride = 0;
    std::uint32_t m_Depth = 32;
    T* m_Pixels = nullptr;
    bool m_OwnsPixels = false;
};

} // namespace ImageLib
