#pragma once

#include "imagelib/OctreeHeap.h"

#include <vector>

namespace ImageLib {

// Counts the pixels of large pictures. The result equals inserting pixel by pixel and adding each leaf to the
// heap, but known leaves are found in a compact table, and heap operations that would change nothing are left
// out.
class OctreeLeafTable {
public:
    // root and heap must outlive the table. Throws std::bad_alloc.
    OctreeLeafTable(oct_node_t& root, node_heap& heap);

    // pixels: four bytes a pixel: red, green, blue and one that is ignored. Throws std::bad_alloc.
    void Count(const std::uint8_t* pixels, std::size_t pixelCount);

private:
    // Lane 0 counts pixels; lanes 1 to 3 count pixels whose lowest bit of red, green or blue is set. All
    // pixels of a leaf have equal upper seven bits, so their sums follow from these counts.
    typedef std::uint32_t Leaf __attribute__((vector_size(16)));

    std::uint32_t Add(const std::uint8_t* pixel);
    void Reorder(std::uint32_t leaf);
    void WriteBack();

    oct_node_t& m_Root;
    node_heap& m_Heap;
    std::vector<std::uint32_t>
        m_Cubes; // number of the cube, by the upper five bits of each channel; 0: no leaves
    std::vector<std::uint32_t> m_Slots; // 64 leaves a cube, by the next two bits of each channel; 0: none
    std::vector<Leaf> m_Leaves;         // leaf 0 is unused
    std::vector<oct_node_t*> m_Nodes;   // the tree node of each leaf
};

} // namespace ImageLib
