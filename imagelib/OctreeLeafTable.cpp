#include "imagelib/OctreeLeafTable.h"

namespace ImageLib {
namespace {

constexpr std::uint32_t kCubes = 1u << 15;
constexpr std::uint32_t kCubeSlots = 64;

std::uint32_t CubeOf(const std::uint8_t* pixel) {
    return static_cast<std::uint32_t>(pixel[0] >> 3 << 10 | pixel[1] >> 3 << 5 | pixel[2] >> 3);
}

std::uint32_t SlotOf(const std::uint8_t* pixel) {
    return static_cast<std::uint32_t>((pixel[0] & 6) << 3 | (pixel[1] & 6) << 1 | (pixel[2] & 6) >> 1);
}

} // namespace

OctreeLeafTable::OctreeLeafTable(oct_node_t& root, node_heap& heap)
    : m_Root(root), m_Heap(heap), m_Cubes(kCubes), m_Slots(kCubeSlots), m_Leaves(1), m_Nodes(1) {}

void OctreeLeafTable::Count(const std::uint8_t* pixels, std::size_t pixelCount) {
    for (const std::uint8_t* pixel = pixels; pixel != pixels + 4 * pixelCount; pixel += 4) {
        const std::uint32_t cube = CubeOf(pixel);
        std::uint32_t number = m_Slots[m_Cubes[cube] * kCubeSlots + SlotOf(pixel)];
        if (number == 0)
            number = Add(pixel, cube);
        Leaf& leaf = m_Leaves[number];
        for (int channel = 0; channel < 3; ++channel)
            leaf.odd[channel] += pixel[channel] & 1;
        // The heap orders leaves by count >> 7: in between it stays as it is.
        if ((++leaf.count & 127) == 0)
            Reorder(number);
    }
    WriteBack();
}

std::uint32_t OctreeLeafTable::Add(const std::uint8_t* pixel, std::uint32_t cube) {
    if (m_Cubes[cube] == 0) {
        m_Cubes[cube] = static_cast<std::uint32_t>(m_Slots.size() / kCubeSlots);
        m_Slots.resize(m_Slots.size() + kCubeSlots);
    }
    const auto number = static_cast<std::uint32_t>(m_Leaves.size());
    m_Slots[m_Cubes[cube] * kCubeSlots + SlotOf(pixel)] = number;
    m_Leaves.push_back({});
    m_Nodes.push_back(node_insert(&m_Root, pixel));
    heap_add(&m_Heap, m_Nodes.back());
    return number;
}

void OctreeLeafTable::Reorder(std::uint32_t leaf) {
    m_Nodes[leaf]->count = m_Leaves[leaf].count;
    heap_add(&m_Heap, m_Nodes[leaf]);
}

void OctreeLeafTable::WriteBack() {
    for (std::size_t i = 1; i < m_Leaves.size(); ++i) {
        oct_node_t& node = *m_Nodes[i];
        node.count = m_Leaves[i].count;
        for (int channel = 0; channel < 3; ++channel) // the sum so far is the leaf's first pixel
            node.sum[channel] = (node.sum[channel] & ~1ull) * node.count + m_Leaves[i].odd[channel];
    }
}

} // namespace ImageLib
