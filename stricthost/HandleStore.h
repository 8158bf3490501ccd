#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "AE_Effect.h"
#include "stricthost/ViolationList.h"

namespace stricthost {

// The host's memory blocks. New ones are filled with 0xCD, disposed ones with 0xDD; disposed blocks stay
// allocated until the store goes, so that a late reader finds the poison and a late writer is found out.
// Any thread may call.
class HandleStore {
public:
    // allocations: how many calls of New succeed; negative: all of them.
    HandleStore(ViolationList& violations, long allocations);
    ~HandleStore();

    // Null when the allowed number of allocations is used up.
    PF_Handle New(std::size_t bytes, const std::string& maker);
    PF_Handle NewFrom(const std::vector<char>& bytes);

    // For plug-ins: each reports a handle that is not live, naming the caller's command.
    void* Lock(PF_Handle handle, const std::string& who);
    void Unlock(PF_Handle handle, const std::string& who);
    void Dispose(PF_Handle handle, const std::string& who);
    std::size_t Size(PF_Handle handle, const std::string& who);
    PF_Err Resize(PF_Handle* handle, std::size_t bytes, const std::string& who);

    bool IsLive(PF_Handle handle) const;
    int Locks(PF_Handle handle) const; // 0 for a handle that is not live
    // For the host itself: what is not live is left alone.
    void DisposeOwn(PF_Handle handle);
    std::vector<char> Bytes(PF_Handle handle) const;

    // Reports blocks that are still live, and writes outside blocks or into disposed ones.
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
