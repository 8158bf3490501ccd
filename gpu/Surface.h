#pragma once

#include <cstdint>
#include <vector>

// A picture in CPU memory: four channels in the order alpha, red, green, blue, `depth` bits each (8, 16 or
// 32 float; 15 counts as 16), rows stride() bytes apart. The pixels are its own or a caller's, who then keeps
// them alive. Needs no GL; used under the frame lock.
class Surface {
public:
    // Handles of surfaces carry this type tag.
    static constexpr std::uint32_t Tag = 0x06000000u;
    class Factory; // the registry defines it

    Surface() = default;
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    virtual ~Surface() = default;

    // Sets the size, with tightly packed rows, and allocates nothing: pixels come with grabPixels.
    // flag is only kept. Always true.
    virtual bool init(unsigned width, unsigned height, unsigned depth, bool flag);

    // Takes height rows, stride bytes apart. copy false: they stay the caller's and are used in place; null
    // forgets them. copy true: they are copied, but memory taken in place before still wins over the copy.
    void grabPixels(const void* pixels, unsigned width, unsigned height, unsigned depth, long stride,
                    bool copy, bool flag);

    unsigned width() const { return m_Width; }
    unsigned height() const { return m_Height; }
    std::uint64_t stride() const { return m_Stride; } // bytes
    unsigned depth() const { return m_Depth; }        // as given, so 15 stays 15
    bool flag() const { return m_Flag; }

    // The first row: the caller's memory when there is some, else the own copy; null when that holds fewer
    // than height() rows. Writing through the second form into a caller's memory changes that memory.
    const unsigned char* pixels() const;
    unsigned char* pixels();

    static Surface invalid; // what failed look-ups return; its size is 0

private:
    unsigned m_Width = 0;
    unsigned m_Height = 0;
    std::uint64_t m_Stride = 0;
    unsigned m_Depth = 0;
    bool m_Flag = false;
    std::vector<unsigned char> m_Pixels;
    unsigned char* m_ExternalPixels = nullptr; // not owned
};
