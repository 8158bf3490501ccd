#pragma once

#include <atomic>
#include <cstdint>

#include "guard/Stage.h"

namespace fxhost {

// What the child tells its parent, in memory that both share. Only lock-free atomics: the child may die at
// any instruction.
struct Board {
    std::atomic<Stage> stage{Stage::Idle};
    std::atomic<std::uint64_t> spans{0}; // counts started spans: a new one gets a new budget
    std::atomic<long> frame{-1};         // -1 when frames are not counted
    std::atomic<long> written{0};
    std::atomic<long> total{0};
    std::atomic<bool> resumable{false};
    std::atomic<bool> outOfMemory{false};
    std::atomic<bool> abandon{false};   // parent: the render thread will not come back
    std::atomic<bool> canDrain{false};  // child: somebody answers to `abandon`
    std::atomic<bool> isDrained{false}; // child: all that was rendered is written
};
static_assert(std::atomic<Stage>::is_always_lock_free && std::atomic<std::uint64_t>::is_always_lock_free &&
              std::atomic<long>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

// The board of this process: the shared one in a guarded child, else one that nobody reads.
Board& CurrentBoard();
void SetCurrentBoard(Board* board);

} // namespace fxhost
