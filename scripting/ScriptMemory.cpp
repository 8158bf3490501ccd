#include "scripting/ScriptMemory.h"

#include <cstdlib>

ScriptMemory::~ScriptMemory() {
    while (m_Blocks.next != &m_Blocks)
        Free(m_Blocks.next + 1);
}

void ScriptMemory::Link(Header* header) {
    header->previous = &m_Blocks;
    header->next = m_Blocks.next;
    header->next->previous = header;
    m_Blocks.next = header;
    m_Used += header->bytes;
}

void ScriptMemory::Unlink(Header* header) {
    header->previous->next = header->next;
    header->next->previous = header->previous;
    m_Used -= header->bytes;
}

void* ScriptMemory::Reallocate(void* memory, std::size_t bytes) {
    if (bytes == 0) {
        Free(memory);
        return nullptr;
    }
    Header* const old = memory ? static_cast<Header*>(memory) - 1 : nullptr;
    const std::size_t others = m_Used - (old ? old->bytes : 0);
    if (bytes > Limit - others)
        return nullptr;
    if (old)
        Unlink(old);
    auto* const header = static_cast<Header*>(std::realloc(old, sizeof(Header) + bytes));
    if (!header) {
        if (old)
            Link(old);
        return nullptr;
    }
    header->bytes = bytes;
    Link(header);
    return header + 1;
}

void ScriptMemory::Free(void* memory) {
    if (!memory)
        return;
    Header* const header = static_cast<Header*>(memory) - 1;
    Unlink(header);
    std::free(header);
}
