#include "clips/Pipeline.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <thread>

#include "clips/DrainGuard.h"
#include "clips/PipeIO.h"
#include "clips/ReadAhead.h"
#include "guard/Stage.h"
#include "guard/StopRequest.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t s_QueueBytes = std::size_t{512} << 20; // limit for each of the two queues

std::size_t ThreadCount(bool parallel) {
    const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
    return parallel ? std::clamp<std::size_t>(cores - 1, 1, 8) : 1;
}

// Pictures that a queue may hold.
std::size_t QueueCapacity(const FrameSource& source, std::size_t threads) {
    const std::size_t bytes = std::size_t{source.width()} * source.height() * source.depth() / 2;
    return std::clamp<std::size_t>(s_QueueBytes / std::max<std::size_t>(bytes, 1), 1, threads + 2);
}

// Renders frames until the plan is done, the source ends or the user interrupts. Returns false when
// interrupted.
bool RenderAll(ReadAhead& reader, WriteBehind& writer, const FramePlan& plan, const RenderFunction& render,
               PipelineResult& result) {
    try {
        for (std::size_t i = 0; i < plan.size(); ++i) {
            if (StopRequested())
                return false;
            auto input = reader.next();
            if (!input)
                return true;
            const FrameId frame = plan.at(i);
            ReportFrame(frame.number);
            const auto begin = Clock::now();
            const auto origin = input->origin;
            RenderedFrame rendered = render(frame, std::move(*input));
            rendered.picture.origin = origin;
            rendered.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
            result.renderSeconds += rendered.seconds;
            if (rendered.hasFailed)
                result.failed.push_back(frame.number);
            if (!writer.add(frame, std::move(rendered)))
                return false;
            ++result.rendered;
        }
    } catch (const StoppedByUser&) {
        return false;
    }
    return true;
}

bool ReadAndRender(FrameSource& source, WriteBehind& writer, const FramePlan& plan,
                   const RenderFunction& render, PipelineResult& result) {
    const std::size_t threads = ThreadCount(source.isParallel());
    ReadAhead reader(plan.size(), threads, QueueCapacity(source, threads),
                     [&](std::size_t i) { return source.read(plan.at(i).number); });
    return RenderAll(reader, writer, plan, render, result);
}

// Writes what is queued and keeps the partial output. The failure that led here is reported, not a second
// one.
void KeepAfterFailure(DrainGuard& drainGuard, FrameSink& sink) {
    try {
        drainGuard.drain();
    } catch (...) {
    }
    sink.keepPartialOutput();
}

void FinishSink(FrameSink& sink, const FramePlan& plan, const PipelineResult& result) {
    if (result.stopped)
        sink.keepPartialOutput();
    else if (result.rendered < plan.size()) // The source ended before the plan.
        sink.finish(plan.at(result.rendered).place);
    else
        sink.finish(plan.total);
}

} // namespace

PipelineResult RunPipeline(FrameSource& source, FrameSink& sink, const FramePlan& plan,
                           const RenderFunction& render, Progress& progress) {
    PipelineResult result;
    const std::size_t earlier = plan.endless ? 0 : plan.total - plan.frames.size();
    const auto report = [&] {
        ReportWritten(static_cast<long>(sink.durableFrames(earlier + progress.written())),
                      static_cast<long>(plan.total), sink.isResumable());
    };
    report();
    const std::size_t writers = ThreadCount(sink.isParallel());
    WriteBehind writer(sink, writers, QueueCapacity(source, writers),
                       [&](const FrameId& frame, const RenderedFrame& rendered) {
                           progress.advance(frame.number, !rendered.hasFailed);
                           report();
                           Event event("frame");
                           event.add("frame", frame.number)
                               .add("status", std::string(rendered.hasFailed ? "failed" : "done"));
                           if (const std::string file = sink.file(frame);
                               !file.empty() && !rendered.hasFailed)
                               event.add("file", file);
                           event.add("seconds", rendered.seconds).send();
                       });
    DrainGuard drainGuard(writer, sink);
    try {
        result.stopped = !ReadAndRender(source, writer, plan, render, result);
        drainGuard.drain();
        FinishSink(sink, plan, result);
    } catch (...) {
        const std::exception_ptr failure = std::current_exception();
        KeepAfterFailure(drainGuard, sink);
        std::rethrow_exception(failure);
    }
    return result;
}

} // namespace fxhost
