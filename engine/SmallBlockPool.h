#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

// Gives out small blocks of memory from large ones, so that blocks that stay do not break up the memory of
// the frames. Freed blocks are used again for the same power of two of bytes; the large ones are freed with
// the pool. Not thread-safe. (The pools of the standard library need a newer macOS than the module.)
class SmallBlockPool {
public:
    // Throws std::bad_alloc when there is no memory.
    void* allocate(std::size_t bytes);
    void deallocate(void* block, std::size_t bytes);

private:
    static constexpr std::size_t LargeBlock = 65536; // bytes
    static constexpr std::size_t Largest = 4096;     // larger requests have memory of their own

    struct FreeBlock {
        FreeBlock* next;
    };
    static unsigned binaryLogarithm(std::size_t bytes); // rounded up

    std::vector<std::unique_ptr<std::byte[]>> m_LargeBlocks;
    std::size_t m_Used = LargeBlock; // of the last large block
    std::array<FreeBlock*, 16> m_Free{};
};

// Lets containers of the standard library use a pool, which must outlive them.
template <class T>
struct PoolAllocator {
    using value_type = T;
    explicit PoolAllocator(SmallBlockPool& owner) : pool(&owner) {}
    template <class Other>
    // NOLINTNEXTLINE(google-explicit-constructor): containers convert their allocator
    PoolAllocator(const PoolAllocator<Other>& other) : pool(other.pool) {}
    T* allocate(std::size_t count) { return static_cast<T*>(pool->allocate(count * sizeof(T))); }
    void deallocate(T* block, std::size_t count) { pool->deallocate(block, count * sizeof(T)); }
    template <class Other>
    bool operator==(const PoolAllocator<Other>& other) const {
        return pool == other.pool;
    }

    SmallBlockPool* pool;
};
