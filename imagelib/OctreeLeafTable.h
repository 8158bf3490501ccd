#pragma once

#include "imagelib/Octree.h"

#include <vector>

namespace ImageLib {

// Counts the pixels of large pictures. Does what inserting pixel by pixel and adding each leaf to the heap
// does, but finds known leaves in a compact table, and leaves out the heap operations that would change
// nothing.
class OctreeLeafTable {
public:
    // Both must outlive the table. Throws std::bad_alloc.
    OctreeLeafTable(oct_node_t& root, node_heap& heap);

    // Four bytes a pixel: red, green, blue and one that is ignored. Throws std::bad_alloc.
    void Count(const std::uint8_t* pixels, std::size_t pixelCount);

private:
    // Lane 0: pixels; lanes 1 to 3: those with the lowest bit of red, green, blue set. All pixels of a leaf
    // agree in the upper seven bits, so these make up their sums.
    typedef std::uint32_t Leaf __attribute__((vector_size(16)));

    std::uint32_t Add(const std::uint8_t* pixel);
    void Reorder(std::uint32_t leaf);
    void WriteBack();

    oct_node_t& m_Root;
    node_heap& m_Heap;
    std::vector<std::uint32_t> m_Cubes; // by the upper five bits of each channel; 0: the cube without leaves
    std::vector<std::uint32_t> m_Slots; // 64 leaves a cube, by the next two bits; 0: none
    std::vector<Leaf> m_Leaves;         // from 1
    std::vector<oct_node_t*> m_Nodes;   // beside m_Leaves
};

} // namespace ImageLib
