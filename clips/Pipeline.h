#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "clips/FrameSink.h"
#include "clips/FrameSource.h"
#include "clips/Progress.h"

namespace fxhost {

// The frames of one run.
struct FramePlan {
    std::vector<FrameId> frames; // to render, ascending
    std::size_t total = 0;       // length of the whole clip, including frames of earlier runs
    bool endless = false;        // every frame from number 1 until the source ends; `frames` is empty

    std::size_t size() const { return endless ? SIZE_MAX : frames.size(); }
    FrameId at(std::size_t i) const { return endless ? FrameId{static_cast<long>(i) + 1, i} : frames[i]; }
};

using RenderFunction = std::function<Picture(const FrameId&, Picture)>;

struct PipelineResult {
    std::size_t rendered = 0; // frames of this run
    bool stopped = false;     // true when the user requested a stop
    double renderSeconds = 0; // spent inside `render`
};

// Reads, renders and writes at the same time. Reading and writing have threads of their own; `render` runs on
// the calling thread. Every way to end writes the frames that are already rendered:
// - A stop requested by the user ends the run early.
// - An exception from the source, the sink or `render` is thrown again after the sink kept its partial
// output.
// - When the watchdog gives up the render thread, this function never returns.
PipelineResult RunPipeline(FrameSource& source, FrameSink& sink, const FramePlan& plan,
                           const RenderFunction& render, Progress& progress);

} // namespace fxhost
