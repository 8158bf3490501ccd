#include "engine/SmallBlockPool.h"

#include <algorithm>
#include <bit>
#include <new>

unsigned SmallBlockPool::binaryLogarithm(std::size_t bytes) {
    return static_cast<unsigned>(std::bit_width(std::max(bytes, alignof(std::max_align_t)) - 1));
}

void* SmallBlockPool::allocate(std::size_t bytes) {
    if (bytes > Largest)
        return ::operator new(bytes);
    const unsigned exponent = binaryLogarithm(bytes);
    if (FreeBlock* const block = m_Free[exponent]) {
        m_Free[exponent] = block->next;
        return block;
    }
    const std::size_t size = std::size_t{1} << exponent;
    if (LargeBlock - m_Used < size) {
        m_LargeBlocks.push_back(std::make_unique_for_overwrite<std::byte[]>(LargeBlock));
        m_Used = 0;
    }
    void* const block = m_LargeBlocks.back().get() + m_Used;
    m_Used += size;
    return block;
}

void SmallBlockPool::deallocate(void* block, std::size_t bytes) {
    if (bytes > Largest)
        return ::operator delete(block);
    FreeBlock*& first = m_Free[binaryLogarithm(bytes)];
    first = new (block) FreeBlock{first};
}
