#include "imagelib/OctreeHeap.h"

#include <cstdlib>
#include <new>

namespace ImageLib {
namespace {

constexpr std::uint32_t s_Growth = 1024; // entries by which the heap grows
constexpr std::uint8_t s_InHeap = 1;     // in oct_node_t::flags

// The child count is in the upper half, count >> depth in the lower half. Flipping the sign bit lets an
// unsigned comparison order signed numbers.
std::uint64_t KeyOf(const oct_node_t& node) {
    const std::uint32_t shifted = node.count >> (node.depth & 31);
    return std::uint64_t{node.child_count} << 32 | (shifted ^ 0x80000000u);
}

void Place(node_heap& heap, std::uint32_t index, heap_entry entry) {
    heap.entries[index] = entry;
    entry.node->heap_index = index;
}

void SiftUp(node_heap& heap, std::uint32_t index, heap_entry entry) {
    while (index >= 2 && entry.key < heap.entries[index / 2].key) {
        Place(heap, index, heap.entries[index / 2]);
        index /= 2;
    }
    Place(heap, index, entry);
}

void Grow(node_heap& heap) {
    const std::size_t capacity = std::size_t{heap.capacity} + s_Growth;
    auto* entries = static_cast<heap_entry*>(std::realloc(heap.entries, capacity * sizeof(heap_entry)));
    if (!entries)
        throw std::bad_alloc();
    heap.entries = entries;
    heap.capacity = static_cast<std::uint32_t>(capacity);
}

} // namespace

void down_heap(node_heap* heap, oct_node_t* node) {
    heap_entry* const entries = heap->entries;
    const std::uint32_t size = heap->size;
    const heap_entry entry{KeyOf(*node), node};
    std::uint32_t index = node->heap_index;
    while (std::uint64_t{index} * 2 < size) {
        std::uint32_t child = index * 2;
        __builtin_prefetch(entries + std::size_t{child} * 2);
        child += child + 1 < size && entries[child + 1].key < entries[child].key;
        if (entry.key <= entries[child].key)
            break;
        Place(*heap, index, entries[child]);
        index = child;
    }
    Place(*heap, index, entry);
}

void heap_add(node_heap* heap, oct_node_t* node) {
    if (node->flags & s_InHeap) {
        down_heap(heap, node);
        SiftUp(*heap, node->heap_index, {KeyOf(*node), node});
        return;
    }
    node->flags |= s_InHeap;
    if (heap->size == 0)
        heap->size = 1;
    if (heap->size >= heap->capacity)
        Grow(*heap);
    const std::uint32_t index = heap->size++;
    SiftUp(*heap, index, {KeyOf(*node), node});
}

} // namespace ImageLib
