#pragma once

#include <functional>
#include <vector>

#include "clips/FrameSink.h"
#include "clips/FrameSource.h"
#include "clips/Progress.h"

namespace fxhost {

// The frames of one run.
struct FramePlan {
    std::vector<FrameId> frames; // to render, ascending
    std::size_t total = 0;       // places of the whole clip, those of earlier runs included
    bool endless = false;        // every frame from number 1 on until the source ends; `frames` is empty

    std::size_t size() const { return endless ? SIZE_MAX : frames.size(); }
    FrameId at(std::size_t i) const { return endless ? FrameId{static_cast<long>(i) + 1, i} : frames[i]; }
};

struct PipelineResult {
    std::size_t rendered = 0;
    bool stopped = false;     // by the user; the sink was told to keep what it has
    double renderSeconds = 0; // inside `render`
};

// Reads, renders and writes at the same time: reading ahead and writing behind on threads of their own,
// `render` on the calling thread. Ends early when the user asks for a stop. When something fails, what was
// rendered before is written, the sink keeps it, and the exception comes out. When the guarding parent gives
// the render thread up, what was rendered is written too, and this function does not return any more.
PipelineResult RunPipeline(FrameSource& source, FrameSink& sink, const FramePlan& plan,
                           const std::function<Picture(const FrameId&, Picture)>& render, Progress& progress);

} // namespace fxhost
