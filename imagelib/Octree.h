#pragma once

#include "imagelib/Surface.h"

// An octree colour reducer: colours are counted in the leaves of a tree, and the least important nodes are
// folded into their parents, in the order of a min-heap, until few enough remain.
// Not re-entrant: all engines take their nodes from one process-wide pool, so one engine works at a time.
namespace ImageLib {

// One tree node, zero-filled when it comes from the pool. Owned by the pool block it lies in.
struct oct_node_t {
    std::uint64_t sum[3];     // red, green, blue of the pixels counted here; rounded averages after `work`
    std::uint32_t count;      // pixels counted here
    std::uint32_t heap_index; // 1-based position while in the heap
    std::uint8_t child_count; // non-null children
    std::uint8_t slot;        // own index, 0..7, among the parent's children
    std::uint8_t flags;       // bit 0: has entered the heap
    std::uint8_t depth;       // 0 for the root, 7 for the deepest
    oct_node_t* children[8];  // by bits: green 4, red 2, blue 1
    oct_node_t* parent;       // null for the root
};

// A node pointer and beside it the node's sort key, so that sifting does not visit the nodes.
struct heap_entry {
    std::uint64_t key;
    oct_node_t* node;
};

// Min-heap of nodes: fewer children first, then the smaller count >> depth, as a signed number.
struct node_heap {
    std::uint32_t capacity; // entries allocated, a multiple of 1024
    std::uint32_t size;     // one more than the number of entries, as slot 0 is left empty; 0 when unused
    heap_entry* entries;    // from realloc; freed by the owner
};

// Finds or makes the depth-7 node of the pixel (red, green, blue in bytes 0 to 2), counts the pixel in it and
// returns it. New nodes come from the pool of the engine that worked last. Throws std::bad_alloc.
oct_node_t* node_insert(oct_node_t* root, const std::uint8_t* pixel);

// Puts the node into the heap, or restores the heap's order after a node in it changed. Throws
// std::bad_alloc.
void heap_add(node_heap* heap, oct_node_t* node);

// Sifts a node that is in the heap down, after its key may have grown.
void down_heap(node_heap* heap, oct_node_t* node);

// Builds an adaptive palette. Owns its tree and heap.
class OctreeQuantEngine {
public:
    OctreeQuantEngine() = default;
    ~OctreeQuantEngine();
    OctreeQuantEngine(const OctreeQuantEngine&) = delete;
    OctreeQuantEngine& operator=(const OctreeQuantEngine&) = delete;

    // pixels: width * height tightly packed pixels of four bytes, red, green, blue and one that is ignored.
    // colourCount: the most colours wanted, clamped to 1..256. Replaces the result of an earlier call. Throws
    // std::bad_alloc.
    void work(const std::uint8_t* pixels, std::uint32_t width, std::uint32_t height,
              std::uint32_t colourCount);

    // 256 entries in heap order, the first Length() of them set and opaque, the others all zero.
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
