#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "sdk/HostApi.h"
#include "stricthost/ViolationList.h"

namespace stricthost {

// The host's memory handles. New blocks are filled with 0xCD and disposed ones with 0xDD. Disposed blocks
// stay allocated until the store is destroyed, so that late readers see the fill and late writers are
// detected. Any thread may call.
class HandleStore {
public:
    // allocations: number of calls of New that succeed; negative: all of them.
    HandleStore(ViolationList& violations, long allocations);
    ~HandleStore();

    // Null when the allowed number of allocations is used up. maker: name of the command, for messages.
    PF_Handle New(std::size_t bytes, const std::string& maker);
    PF_Handle NewFrom(const std::vector<char>& bytes);

    // For plug-ins: each reports a violation for a handle that is not live. who: name of the command.
    void* Lock(PF_Handle handle, const std::string& who);
    void Unlock(PF_Handle handle, const std::string& who);
    void Dispose(PF_Handle handle, const std::string& who);
    std::size_t Size(PF_Handle handle, const std::string& who);
    PF_Err Resize(PF_Handle* handle, std::size_t bytes, const std::string& who);

    bool IsLive(PF_Handle handle) const;
    int Locks(PF_Handle handle) const; // 0 for a handle that is not live
    // For the host itself: ignores a handle that is not live.
    void DisposeOwn(PF_Handle handle);
    std::vector<char> Bytes(PF_Handle handle) const;

    // Bytes of all blocks, those that were disposed of included.
    std::size_t TotalBytes() const;

    // Reports blocks that are still live, writes outside blocks and writes into disposed blocks.
    void CheckAtEnd();

private:
    struct Block;
    PF_Handle Add(std::size_t bytes, const std::string& maker);
    Block* FindLive(PF_Handle handle, const char* action, const std::string& who);
    void Poison(Block& block);
    void CheckGuards(const Block& block);

    ViolationList& m_Violations;
    long m_AllocationsLeft;
    mutable std::mutex m_Mutex;
    std::unordered_map<PF_Handle, std::unique_ptr<Block>> m_Blocks;
};

} // namespace stricthost
