#pragma once

#include <cstdint>
#include <vector>

#include "clips/FrameList.h"

namespace fxhost {

// The frames of one run.
struct FramePlan {
    std::vector<FrameId> frames; // to render, ascending
    std::size_t total = 0;       // length of the whole clip, including frames of earlier runs
    bool endless = false;        // every frame from `first` until the source ends; `frames` is empty
    long first = 1;              // of an endless plan

    std::size_t size() const { return endless ? SIZE_MAX : frames.size(); }
    FrameId at(std::size_t i) const { return endless ? FrameId{first + static_cast<long>(i), i} : frames[i]; }
};

} // namespace fxhost
