#include "imagelib/OctreeNode.h"

#include <cstdlib>
#include <new>

namespace ImageLib {
namespace {

constexpr std::uint32_t s_BlockNodes = 2048;
constexpr std::uint8_t s_LeafDepth = 7;

// The block from which nodes are taken, from its end to its start. Node 0 of a block is never given away: its
// parent field links to the next block of the same tree.
oct_node_t* s_PoolBlock = nullptr;
std::uint32_t s_PoolFree = 0; // nodes left in the block, node 0 included

oct_node_t* NewBlock() {
    auto* block = static_cast<oct_node_t*>(std::calloc(s_BlockNodes, sizeof(oct_node_t)));
    if (!block)
        throw std::bad_alloc();
    return block;
}

oct_node_t* TakeNode() {
    if (s_PoolFree < 2) {
        oct_node_t* const block = NewBlock();
        s_PoolBlock->parent = block;
        s_PoolBlock = block;
        s_PoolFree = s_BlockNodes;
    }
    return s_PoolBlock + --s_PoolFree;
}

void CountPixel(oct_node_t& leaf, const std::uint8_t* pixel) {
    for (int channel = 0; channel < 3; ++channel)
        leaf.sum[channel] += pixel[channel];
    ++leaf.count;
}

} // namespace

oct_node_t* TakeOctreeRoot() {
    s_PoolBlock = NewBlock();
    s_PoolFree = s_BlockNodes - 1;
    return s_PoolBlock + s_PoolFree;
}

void FreeOctree(oct_node_t* root) {
    oct_node_t* block = root ? root - (s_BlockNodes - 1) : nullptr;
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

oct_node_t* node_insert(oct_node_t* root, const std::uint8_t* pixel) {
    oct_node_t* node = root;
    unsigned mask = 128;
    for (std::uint8_t depth = 1; depth <= s_LeafDepth; ++depth, mask >>= 1) {
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

} // namespace ImageLib
