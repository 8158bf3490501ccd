#include "imagelib/OctreeQuantEngine.h"

#include "imagelib/OctreeLeafTable.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ImageLib {
namespace {

constexpr std::size_t s_LeafTablePixels =
    16384; // pictures with at least as many pixels are counted with a leaf table

} // namespace

OctreeQuantEngine::~OctreeQuantEngine() {
    Release();
}

void OctreeQuantEngine::Release() {
    FreeOctree(m_Root);
    std::free(m_Heap.entries);
    m_Heap = {};
    m_Root = nullptr;
}

void OctreeQuantEngine::work(const std::uint8_t* pixels, std::uint32_t width, std::uint32_t height,
                             std::uint32_t colourCount) {
    colourCount = std::clamp(colourCount, 1u, 256u);
    Release();
    for (Pixel32& colour : m_Palette)
        colour = {};
    m_Root = TakeOctreeRoot();
    const std::size_t pixelCount = std::size_t{width} * height;
    if (pixelCount == 0)
        return;
    if (pixelCount < s_LeafTablePixels)
        Count(pixels, pixelCount);
    else
        OctreeLeafTable(*m_Root, m_Heap).Count(pixels, pixelCount);
    Fold(colourCount);
    FillPalette();
}

void OctreeQuantEngine::Count(const std::uint8_t* pixels, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i)
        heap_add(&m_Heap, node_insert(m_Root, pixels + 4 * i));
}

void OctreeQuantEngine::Fold(std::uint32_t colourCount) {
    while (m_Heap.size > std::uint64_t{colourCount} + 1) {
        oct_node_t* const node = m_Heap.entries[1].node;
        oct_node_t* const last = m_Heap.entries[--m_Heap.size].node;
        last->heap_index = 1;
        down_heap(&m_Heap, last);

        oct_node_t* const parent = node->parent;
        parent->count += node->count;
        for (int channel = 0; channel < 3; ++channel)
            parent->sum[channel] += node->sum[channel];
        --parent->child_count;
        parent->children[node->slot] = nullptr;
        heap_add(&m_Heap, parent);
    }
}

void OctreeQuantEngine::FillPalette() {
    for (std::uint32_t k = 1; k < m_Heap.size; ++k) {
        oct_node_t& node = *m_Heap.entries[k].node;
        const double count = node.count;
        double mean[3];
        for (int channel = 0; channel < 3; ++channel) {
            mean[channel] = static_cast<double>(node.sum[channel]) / count;
            node.sum[channel] = static_cast<std::uint64_t>(std::floor(mean[channel] + 0.5));
        }
        m_Palette[k - 1] = {1.0f, static_cast<float>(mean[0] / 255), static_cast<float>(mean[1] / 255),
                            static_cast<float>(mean[2] / 255)};
    }
}

} // namespace ImageLib
