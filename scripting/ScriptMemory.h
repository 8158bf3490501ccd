#pragma once

#include <cstddef>

// The memory of one interpreter. It is limited, so that a script that allocates without end fails before the
// host does, and it knows its blocks, so that it can be freed when the interpreter cannot do so any more.
class ScriptMemory {
public:
    // Bytes that one interpreter can have.
    static constexpr std::size_t Limit = std::size_t{256} << 20;

    ScriptMemory() = default;
    // Frees all blocks that are left.
    ~ScriptMemory();
    ScriptMemory(const ScriptMemory&) = delete;
    ScriptMemory& operator=(const ScriptMemory&) = delete;

    // Like malloc, realloc and free. Null when the system has no memory or the limit is reached; the block
    // that was to be resized is then unchanged.
    void* Allocate(std::size_t bytes) { return Reallocate(nullptr, bytes); }
    void* Reallocate(void* memory, std::size_t bytes);
    void Free(void* memory);

private:
    // Precedes each block's memory.
    struct alignas(std::max_align_t) Header {
        Header* previous;
        Header* next;
        std::size_t bytes;
    };

    void Link(Header* header);
    void Unlink(Header* header);

    Header m_Blocks{&m_Blocks, &m_Blocks, 0}; // a ring, which begins and ends here
    std::size_t m_Used = 0;
};
