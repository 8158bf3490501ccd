#include "imagelib/OctreeLeafTable.h"

#include <cstring>

namespace ImageLib {
namespace {

// The upper five bits of each channel select a cube of colours, the next two bits of each a slot in this
// cube.
constexpr std::uint32_t s_Cubes = 1u << 15;
constexpr std::uint32_t s_CubeSlots = 64;

// Loads a pixel as one number, with red in the lowest byte: both processor families are little-endian.
std::uint32_t Load(const std::uint8_t* pixel) {
    std::uint32_t packed;
    std::memcpy(&packed, pixel, 4);
    return packed;
}

std::uint32_t CubeOf(std::uint32_t pixel) {
    return (pixel << 7 & 0x7C00) | (pixel >> 6 & 0x3E0) | (pixel >> 19 & 0x1F);
}

std::uint32_t SlotOf(std::uint32_t pixel) {
    return (pixel << 3 & 0x30) | (pixel >> 7 & 0xC) | (pixel >> 17 & 0x3);
}

std::uint32_t LowBitsOf(std::uint32_t pixel) {
    return (pixel & 1) | (pixel >> 7 & 2) | (pixel >> 14 & 4);
}

} // namespace

OctreeLeafTable::OctreeLeafTable(oct_node_t& root, node_heap& heap)
    : m_Root(root), m_Heap(heap), m_Cubes(s_Cubes), m_Slots(s_CubeSlots), m_Leaves(1), m_Nodes(1) {}

void OctreeLeafTable::Count(const std::uint8_t* pixels, std::size_t pixelCount) {
    // The increment of a leaf, by the lowest bits of the pixel's red, green and blue.
    static constexpr Leaf s_Steps[8] = {{1, 0, 0, 0}, {1, 1, 0, 0}, {1, 0, 1, 0}, {1, 1, 1, 0},
                                        {1, 0, 0, 1}, {1, 1, 0, 1}, {1, 0, 1, 1}, {1, 1, 1, 1}};
    const std::uint32_t* const cubes = m_Cubes.data();
    const std::uint32_t* slots = m_Slots.data();
    Leaf* leaves = m_Leaves.data();
    for (std::size_t i = 0; i < pixelCount; ++i) {
        const std::uint32_t pixel = Load(pixels + 4 * i);
        const std::uint32_t cube = CubeOf(pixel);
        std::uint32_t number = slots[cubes[cube] * s_CubeSlots + SlotOf(pixel)];
        if (number == 0) {
            number = Add(pixels + 4 * i);
            slots = m_Slots.data();
            leaves = m_Leaves.data();
        }
        leaves[number] += s_Steps[LowBitsOf(pixel)];
        // The heap orders leaves by count >> 7, so their order can change only when this quotient does.
        if ((leaves[number][0] & 127) == 0)
            Reorder(number);
    }
    WriteBack();
}

std::uint32_t OctreeLeafTable::Add(const std::uint8_t* pixel) {
    const std::uint32_t cube = CubeOf(Load(pixel));
    if (m_Cubes[cube] == 0) {
        m_Cubes[cube] = static_cast<std::uint32_t>(m_Slots.size() / s_CubeSlots);
        m_Slots.resize(m_Slots.size() + s_CubeSlots);
    }
    const auto number = static_cast<std::uint32_t>(m_Leaves.size());
    m_Slots[m_Cubes[cube] * s_CubeSlots + SlotOf(Load(pixel))] = number;
    m_Leaves.emplace_back(Leaf{});
    m_Nodes.push_back(node_insert(&m_Root, pixel));
    heap_add(&m_Heap, m_Nodes.back());
    return number;
}

void OctreeLeafTable::Reorder(std::uint32_t leaf) {
    m_Nodes[leaf]->count = m_Leaves[leaf][0];
    heap_add(&m_Heap, m_Nodes[leaf]);
}

void OctreeLeafTable::WriteBack() {
    for (std::size_t i = 1; i < m_Leaves.size(); ++i) {
        oct_node_t& node = *m_Nodes[i];
        node.count = m_Leaves[i][0];
        for (int channel = 0; channel < 3; ++channel) // the sum is still that of the leaf's first pixel
            node.sum[channel] = (node.sum[channel] & ~1ull) * node.count + m_Leaves[i][channel + 1];
    }
}

} // namespace ImageLib
