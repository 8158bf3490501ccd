#include "stricthost/HandleStore.h"

#include <algorithm>
#include <cstring>

namespace stricthost {

namespace {

constexpr std::size_t s_GuardBytes = 32;
constexpr char s_Guard = static_cast<char>(0xA5);
constexpr char s_Fresh = static_cast<char>(0xCD);
constexpr char s_Disposed = static_cast<char>(0xDD);

bool AllEqual(const char* begin, const char* end, char value) {
    return std::all_of(begin, end, [value](char byte) { return byte == value; });
}

} // namespace

struct HandleStore::Block {
    Block(std::size_t bytes, std::string makerName)
        : memory(bytes + 2 * s_GuardBytes, s_Guard), size(bytes), maker(std::move(makerName)) {
        std::fill(Data(), Data() + size, s_Fresh);
        master = Data();
    }
    char* Data() { return memory.data() + s_GuardBytes; }
    const char* Data() const { return memory.data() + s_GuardBytes; }

    std::vector<char> memory;
    std::vector<std::vector<char>> outgrown; // the blocks before a resize
    std::size_t size;
    std::string maker; // the command that made it
    char* master;      // what a handle points to
    int locks = 0;
    bool live = true;
};

HandleStore::HandleStore(ViolationList& violations, long allocations)
    : m_Violations(violations), m_AllocationsLeft(allocations) {}

HandleStore::~HandleStore() = default;

PF_Handle HandleStore::Add(std::size_t bytes, const std::string& maker) {
    auto block = std::make_unique<Block>(bytes, maker);
    const PF_Handle handle = &block->master;
    m_Blocks.emplace(handle, std::move(block));
    return handle;
}

PF_Handle HandleStore::New(std::size_t bytes, const std::string& maker) {
    const std::lock_guard lock(m_Mutex);
    if (m_AllocationsLeft == 0)
        return nullptr;
    if (m_AllocationsLeft > 0)
        --m_AllocationsLeft;
    return Add(bytes, maker);
}

PF_Handle HandleStore::NewFrom(const std::vector<char>& bytes) {
    const std::lock_guard lock(m_Mutex);
    const PF_Handle handle = Add(bytes.size(), "the host");
    std::copy(bytes.begin(), bytes.end(), *handle);
    return handle;
}

HandleStore::Block* HandleStore::FindLive(PF_Handle handle, const char* action, const std::string& who) {
    const auto found = m_Blocks.find(handle);
    if (found != m_Blocks.end() && found->second->live)
        return found->second.get();
    const char* kind = !handle                   ? "a null handle"
                       : found == m_Blocks.end() ? "an unknown handle"
                                                 : "a freed handle";
    m_Violations.Add(who + " " + action + " " + kind);
    return nullptr;
}

void* HandleStore::Lock(PF_Handle handle, const std::string& who) {
    const std::lock_guard lock(m_Mutex);
    Block* block = FindLive(handle, "locked", who);
    if (!block)
        return nullptr;
    ++block->locks;
    return block->Data();
}

void HandleStore::Unlock(PF_Handle handle, const std::string& who) {
    const std::lock_guard lock(m_Mutex);
    if (Block* block = FindLive(handle, "unlocked", who))
        --block->locks;
}

void HandleStore::Dispose(PF_Handle handle, const std::string& who) {
    const std::lock_guard lock(m_Mutex);
    if (Block* block = FindLive(handle, "disposed of", who))
        Poison(*block);
}

std::size_t HandleStore::Size(PF_Handle handle, const std::string& who) {
    const std::lock_guard lock(m_Mutex);
    const Block* block = FindLive(handle, "asked for the size of", who);
    return block ? block->size : 0;
}

PF_Err HandleStore::Resize(PF_Handle* handle, std::size_t bytes, const std::string& who) {
    const std::lock_guard lock(m_Mutex);
    Block* block = FindLive(handle ? *handle : nullptr, "resized", who);
    if (!block)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (block->locks != 0)
        m_Violations.Add(who + " resized a locked handle");
    CheckGuards(*block);
    Block larger(bytes, block->maker);
    std::copy_n(block->Data(), std::min(bytes, block->size), larger.Data());
    std::fill(block->memory.begin(), block->memory.end(), s_Disposed);
    block->outgrown.push_back(std::move(block->memory));
    block->memory = std::move(larger.memory);
    block->size = bytes;
    block->master = block->Data();
    return PF_Err_NONE;
}

bool HandleStore::IsLive(PF_Handle handle) const {
    const std::lock_guard lock(m_Mutex);
    const auto found = m_Blocks.find(handle);
    return found != m_Blocks.end() && found->second->live;
}

int HandleStore::Locks(PF_Handle handle) const {
    const std::lock_guard lock(m_Mutex);
    const auto found = m_Blocks.find(handle);
    return found != m_Blocks.end() && found->second->live ? found->second->locks : 0;
}

void HandleStore::DisposeOwn(PF_Handle handle) {
    const std::lock_guard lock(m_Mutex);
    const auto found = m_Blocks.find(handle);
    if (found != m_Blocks.end() && found->second->live)
        Poison(*found->second);
}

std::vector<char> HandleStore::Bytes(PF_Handle handle) const {
    const std::lock_guard lock(m_Mutex);
    const auto found = m_Blocks.find(handle);
    if (found == m_Blocks.end() || !found->second->live)
        return {};
    const Block& block = *found->second;
    return {block.Data(), block.Data() + block.size};
}

std::size_t HandleStore::TotalBytes() const {
    const std::lock_guard lock(m_Mutex);
    std::size_t bytes = 0;
    for (const auto& [handle, block] : m_Blocks) {
        bytes += sizeof *block + block->memory.capacity();
        for (const auto& memory : block->outgrown)
            bytes += memory.capacity();
    }
    return bytes;
}

void HandleStore::Poison(Block& block) {
    CheckGuards(block);
    block.live = false;
    std::fill(block.memory.begin(), block.memory.end(), s_Disposed);
}

void HandleStore::CheckGuards(const Block& block) {
    const char* begin = block.memory.data();
    const char* end = begin + block.memory.size();
    if (!AllEqual(begin, block.Data(), s_Guard) || !AllEqual(block.Data() + block.size, end, s_Guard))
        m_Violations.Add("a handle of " + std::to_string(block.size) + " bytes made in " + block.maker +
                         " was written outside its memory");
}

void HandleStore::CheckAtEnd() {
    const std::lock_guard lock(m_Mutex);
    const auto untouched = [](const std::vector<char>& memory) {
        return AllEqual(memory.data(), memory.data() + memory.size(), s_Disposed);
    };
    for (auto& [handle, block] : m_Blocks) {
        const std::string what =
            "a handle of " + std::to_string(block->size) + " bytes made in " + block->maker;
        if (block->live) {
            m_Violations.Add(what + " was never disposed of");
            CheckGuards(*block);
        } else if (!untouched(block->memory)) {
            m_Violations.Add(what + " was written after it was disposed of");
        }
        if (!std::all_of(block->outgrown.begin(), block->outgrown.end(), untouched))
            m_Violations.Add(what + " was written at its old place after a resize");
    }
}

} // namespace stricthost
