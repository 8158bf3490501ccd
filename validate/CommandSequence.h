#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "validate/TestRun.h"

namespace validate {

// One step of a shuffled sequence. It concerns one of eight slots, each of which holds an instance or none.
struct Step {
    enum Kind : unsigned { Delete, Duplicate, Reopen, Change, UpdateUI, UserChanged, Render, KindCount };
    Kind kind;
    unsigned slot;  // 0 to 7; thread `slot % 4` runs the step
    unsigned value; // selects the values to set, or the frame to render
};

// "slot 3: render frame 12".
std::string Describe(const Step& step);

// A reproducible sequence of steps, half of which render.
std::vector<Step> ShuffledSteps(std::uint32_t seed, std::size_t count);

// Runs the steps on four threads, each with the steps of its slots in order, in one host. The seed selects
// the personality and quirks. Every frame must equal the one of a fresh instance with the same values, and no
// rule may be broken. Any subset of a sequence can be run: a step on an empty slot applies the effect first.
void RunSteps(TestRun& run, const std::vector<Step>& steps);

// Removes as many steps as it can while the sequence fails, in at most `attempts` trials.
std::vector<Step> Shorten(std::vector<Step> steps, int attempts,
                          const std::function<bool(const std::vector<Step>&)>& fails);

} // namespace validate
