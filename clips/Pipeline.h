#pragma once

#include <functional>

#include "clips/FramePlan.h"
#include "clips/FrameSink.h"
#include "clips/FrameSource.h"
#include "clips/Progress.h"
#include "clips/WriteBehind.h"

namespace fxhost {

using RenderFunction = std::function<RenderedFrame(const FrameId&, Picture)>;

struct PipelineResult {
    std::size_t rendered = 0; // frames of this run, including failed ones
    std::vector<long> failed; // numbers of the frames in which the effect reported an error
    bool stopped = false;     // true when the user requested a stop
    double renderSeconds = 0; // spent inside `render`
};

// Reads, renders and writes at the same time. Background threads read and write; `render` runs on the calling
// thread. Every way to end writes the frames that are already rendered:
// - A stop requested by the user ends the run early.
// - An exception from the source, the sink or `render` is thrown again after the sink kept its partial
// output.
// - When the watchdog gives up the render thread, this function never returns.
PipelineResult RunPipeline(FrameSource& source, FrameSink& sink, const FramePlan& plan,
                           const RenderFunction& render, Progress& progress);

} // namespace fxhost
