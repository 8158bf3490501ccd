#pragma once

#include "imagelib/OctreeHeap.h"
#include "imagelib/Surface.h"

namespace ImageLib {

// Builds an adaptive palette: colours are counted in the leaves of an octree, and the least important nodes
// are merged into their parents, in the order of a min-heap, until few enough remain. Owns its tree and its
// heap. One engine works at a time in the process (see OctreeNode.h).
class OctreeQuantEngine {
public:
    OctreeQuantEngine() = default;
    ~OctreeQuantEngine();
    OctreeQuantEngine(const OctreeQuantEngine&) = delete;
    OctreeQuantEngine& operator=(const OctreeQuantEngine&) = delete;

    // Replaces the result of an earlier call. pixels: width * height tightly packed pixels of four bytes:
    // red, green, blue and one byte that is ignored. colourCount: the largest number of colours, clamped
    // to 1..256. Throws std::bad_alloc.
    void work(const std::uint8_t* pixels, std::uint32_t width, std::uint32_t height,
              std::uint32_t colourCount);

    // 256 entries in heap order, the first Length() of them opaque colours, the others all zero.
    const Pixel32* Palette() const { return m_Palette; }
    std::uint32_t Length() const { return m_Heap.size ? m_Heap.size - 1 : 0; }
    const node_heap& Heap() const { return m_Heap; }
    oct_node_t* Root() const { return m_Root; } // null before the first call of work

private:
    void Release();
    void Count(const std::uint8_t* pixels, std::size_t pixelCount);
    void Fold(std::uint32_t colourCount);
    void FillPalette();

    Pixel32 m_Palette[256] = {};
    node_heap m_Heap = {};
    oct_node_t* m_Root = nullptr;
};

} // namespace ImageLib
