#pragma once

#include <cstdint>

// The octree of the adaptive palettes. Nodes come from one pool in the process, so that only one tree may
// grow at a time; nothing here is synchronised.
namespace ImageLib {

// One tree node, zero-filled when it comes from the pool, which owns it.
struct oct_node_t {
    std::uint64_t sum[3];     // red, green, blue of the pixels counted here; rounded averages after `work`
    std::uint32_t count;      // pixels counted here
    std::uint32_t heap_index; // 1-based position while in the heap
    std::uint8_t child_count; // non-null children
    std::uint8_t slot;        // own index, 0..7, among the parent's children
    std::uint8_t flags;       // bit 0: has entered the heap
    std::uint8_t depth;       // 0 for the root, 7 for the deepest
    oct_node_t* children[8];  // the index has the bits green 4, red 2, blue 1
    oct_node_t* parent;       // null for the root
};

// Starts a tree in a new block of the pool and returns its root. Throws std::bad_alloc.
oct_node_t* TakeOctreeRoot();

// Frees all nodes of the tree. root: from TakeOctreeRoot, or null.
void FreeOctree(oct_node_t* root);

// Finds or makes the node of depth 7 for the pixel (red, green, blue in bytes 0 to 2), counts the pixel in it
// and returns it. New nodes are taken for the tree whose root was taken last. Throws std::bad_alloc.
oct_node_t* node_insert(oct_node_t* root, const std::uint8_t* pixel);

} // namespace ImageLib
