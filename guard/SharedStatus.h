#pragma once

#include <atomic>
#include <cstdint>

#include "guard/Stage.h"

namespace fxhost {

// The status block that a guarded child shares with its parent. Every field is a lock-free atomic, because
// the child may die at any instruction.
struct SharedStatus {
    std::atomic<Stage> stage{Stage::Idle};
    std::atomic<std::uint64_t> spans{0}; // number of started spans; each one gets the full time budget
    std::atomic<long> frame{-1};         // number of the current frame; -1 when frames are not counted
    std::atomic<long> written{0};        // frames that survive the death of the child
    std::atomic<long> total{0};          // frames of the whole clip; 0 when there is no clip
    std::atomic<bool> resumable{false};  // true when --resume can continue after the written frames
    std::atomic<bool> outOfMemory{false};
    std::atomic<bool> abandon{false};   // set by the parent: the render thread hangs and is given up
    std::atomic<bool> canDrain{false};  // set by the child: a thread reacts to `abandon`
    std::atomic<bool> isDrained{false}; // set by the child: every rendered frame is written
};
static_assert(std::atomic<Stage>::is_always_lock_free && std::atomic<std::uint64_t>::is_always_lock_free &&
              std::atomic<long>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

// The status block of this process. It is shared with a parent only in a guarded child.
SharedStatus& CurrentStatus();
// Null restores the unshared block. `status` must outlive its use. Call it before other threads start.
void SetCurrentStatus(SharedStatus* status);

} // namespace fxhost
