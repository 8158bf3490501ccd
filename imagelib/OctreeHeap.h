#pragma once

#include "imagelib/OctreeNode.h"

// The order in which octree nodes are merged into their parents.
namespace ImageLib {

// A node pointer and beside it the node's sort key, so that sifting does not read the nodes.
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

// Adds the node to the heap, or restores the heap's order after a node in it changed. Throws std::bad_alloc.
void heap_add(node_heap* heap, oct_node_t* node);

// Sifts down a node that is in the heap, after its key may have grown.
void down_heap(node_heap* heap, oct_node_t* node);

} // namespace ImageLib
