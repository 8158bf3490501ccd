#include "imagelib/Octree.h"

#include "imagelib/OctreeLeafTable.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace ImageLib {
namespace {

constexpr std::uint32_t kBlockNodes = 2048;
constexpr std::uint8_t kLeafDepth = 7;
constexpr std::size_t kTablePixels = 16384; // from here on a table pays off

// The block that nodes are taken from, from its end down. Node 0 of a block is never handed out: its parent
// field links to the next block of the same tree.
oct_node_t* s_PoolBlock = nullptr;
std::uint32_t s_PoolFree = 0; // nodes left in the block, node 0 included

oct_node_t* NewBlock() {
    auto* block = static_cast<oct_node_t*>(std::calloc(kBlockNodes, sizeof(oct_node_t)));
    if (!block)
        throw std::bad_alloc();
    return block;
}

oct_node_t* TakeNode() {
    if (s_PoolFree < 2) {
        oct_node_t* const block = NewBlock();
        s_PoolBlock->parent = block;
        s_PoolBlock = block;
        s_PoolFree = kBlockNodes;
    }
    return s_PoolBlock + --s_PoolFree;
}

oct_node_t* TakeRoot() {
    s_PoolBlock = NewBlock();
    s_PoolFree = kBlockNodes - 1;
    return s_PoolBlock + s_PoolFree;
}

void CountPixel(oct_node_t& leaf, const std::uint8_t* pixel) {
    for (int channel = 0; channel < 3; ++channel)
        leaf.sum[channel] += pixel[channel];
    ++leaf.count;
}

} // namespace

oct_node_t* node_insert(oct_node_t* root, const std::uint8_t* pixel) {
    oct_node_t* node = root;
    unsigned mask = 128;
    for (std::uint8_t depth = 1; depth <= kLeafDepth; ++depth, mask >>= 1) {
        const unsigned slot =
            (pixel[1] & mask ? 4 : 0) | (pixel[0] & mask ? 2 : 0) | (pixel[2] & mask ? 1 : 0);
        oct_node_t*& child = node->children[slot];
        if (!child) {
            child = TakeNode();
            child->slot = static_cast<std::uint8_t>(slot);
            child->depth = depth;
            child->parent = node;
            ++node->child_count;
        }
        node = child;
    }
    CountPixel(*node, pixel);
    return node;
}

OctreeQuantEngine::~OctreeQuantEngine() {
    Release();
}

void OctreeQuantEngine::Release() {
    if (m_Root) {
        oct_node_t* block = m_Root - (kBlockNodes - 1);
        while (block) {
            oct_node_t* const next = block->parent;
            if (block == s_PoolBlock) {
                s_PoolBlock = nullptr;
                s_PoolFree = 0;
            }
            std::free(block);
            block = next;
        }
    }
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
    m_Root = TakeRoot();
    const std::size_t pixelCount = std::size_t{width} * height;
    if (pixelCount == 0)
        return;
    if (pixelCount < kTablePixels)
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
            node.sum[channel] = static_cast<std::uint64_t>(mean[channel] + 0.5);
        }
        m_Palette[k - 1] = {1.0f, static_cast<float>(mean[0] / 255), static_cast<float>(mean[1] / 255),
                            static_cast<float>(mean[2] / 255)};
    }
}

} // namespace ImageLib
