#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// A picture in CPU memory. It has four channels in the order alpha, red, green, blue, of a depth as in
// PixelDepth.h. Rows are stride() bytes apart. The pixels are the surface's own, or belong to a caller who
// keeps them alive. Needs no OpenGL; used inside the frame lock.
class Surface {
public:
    // Handles of surfaces carry this type tag.
    static constexpr std::uint32_t Tag = 0x06000000u;
    class Factory; // the registry defines it

    Surface() = default;
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    virtual ~Surface() = default;

    // Sets the size with rows without padding. Allocates nothing: grabPixels brings the pixels. The flag is
    // stored and has no effect. Always returns true.
    virtual bool init(unsigned width, unsigned height, unsigned depth, bool flag);

    // Takes `height` rows, `stride` bytes apart. Without copy they are used in place and stay the caller's;
    // null drops them. With copy they are copied, but memory that is used in place still takes precedence
    // over the copy.
    void grabPixels(const void* pixels, unsigned width, unsigned height, unsigned depth,
                    std::ptrdiff_t stride, bool copy, bool flag);

    unsigned width() const { return m_Width; }
    unsigned height() const { return m_Height; }
    std::uint64_t stride() const { return m_Stride; } // bytes
    unsigned depth() const { return m_Depth; }        // as given, so 15 stays 15
    bool flag() const { return m_Flag; }

    // Returns the first row: of the caller's memory when there is some, otherwise of the copy. Null when the
    // copy has fewer than height() rows. Writing to the result of the second form may change the caller's
    // memory.
    const unsigned char* pixels() const;
    unsigned char* pixels();

    static Surface invalid; // returned by failed look-ups; its size is 0

private:
    unsigned m_Width = 0;
    unsigned m_Height = 0;
    std::uint64_t m_Stride = 0;
    unsigned m_Depth = 0;
    bool m_Flag = false;
    std::vector<unsigned char> m_Pixels;
    unsigned char* m_ExternalPixels = nullptr; // not owned
};
