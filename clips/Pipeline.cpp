#include "clips/Pipeline.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>
#include <unistd.h>

#include "clips/PipeIO.h"
#include "clips/ReadAhead.h"
#include "clips/WriteBehind.h"
#include "guard/Stage.h"
#include "guard/StopRequest.h"

namespace fxhost {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t s_QueueBytes = std::size_t{512} << 20; // of pictures that wait, on each side

std::size_t Threads(bool parallel) {
    const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
    return parallel ? std::clamp<std::size_t>(cores - 1, 1, 8) : 1;
}

std::size_t Room(const FrameSource& source, std::size_t threads) {
    const std::size_t bytes = std::size_t{source.width()} * source.height() * source.depth() / 2;
    return std::clamp<std::size_t>(s_QueueBytes / std::max<std::size_t>(bytes, 1), 1, threads + 2);
}

// Ends the writing exactly once: by the render thread, or in its place when it is given up.
class Ending {
public:
    Ending(WriteBehind& writer, FrameSink& sink)
        : m_Writer(writer), m_Sink(sink), m_Thread([this] { watch(); }) {}
    ~Ending() {
        m_Over = true;
        m_Thread.join();
    }
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;

    // For the render thread. Throws what the sink threw.
    void drain() {
        claim();
        m_Writer.drain();
    }

private:
    void claim() {
        const std::lock_guard lock(m_Mutex);
        m_Claimed = true;
    }

    void watch() {
        while (!m_Over) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            const std::lock_guard lock(m_Mutex);
            if (m_Claimed || !AbandonRequested())
                continue;
            try {
                m_Writer.drain();
            } catch (...) { // the parent has said why the run ends
            }
            m_Sink.keep();
            MarkDrained();
            for (;;) // with the lock, so that the render thread stays out
                pause();
        }
    }

    WriteBehind& m_Writer;
    FrameSink& m_Sink;
    std::mutex m_Mutex;
    bool m_Claimed = false;
    std::atomic<bool> m_Over{false};
    std::thread m_Thread;
};

// Renders until the plan, the source or the user's patience ends; whether all that there is was rendered.
bool RenderAll(ReadAhead& reader, WriteBehind& writer, const FramePlan& plan,
               const std::function<Picture(const FrameId&, Picture)>& render, PipelineResult& result) {
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
            Picture picture = render(frame, std::move(*input));
            result.renderSeconds += std::chrono::duration<double>(Clock::now() - begin).count();
            if (!writer.add(frame, std::move(picture)))
                return false;
            ++result.rendered;
        }
    } catch (const StoppedByUser&) {
        return false;
    }
    return true;
}

} // namespace

PipelineResult RunPipeline(FrameSource& source, FrameSink& sink, const FramePlan& plan,
                           const std::function<Picture(const FrameId&, Picture)>& render,
                           Progress& progress) {
    PipelineResult result;
    const std::size_t before = plan.endless ? 0 : plan.total - plan.frames.size(); // by earlier runs
    const auto report = [&] {
        ReportWritten(static_cast<long>(sink.safe(before + progress.done())), static_cast<long>(plan.total),
                      sink.isResumable());
    };
    report();
    const std::size_t readers = Threads(source.isParallel()), writers = Threads(sink.isParallel());
    WriteBehind writer(sink, writers, Room(source, writers), [&] {
        progress.advance();
        report();
    });
    Ending ending(writer, sink);
    try {
        bool complete = false;
        {
            ReadAhead reader(plan.size(), readers, Room(source, readers),
                             [&](std::size_t i) { return source.read(plan.at(i).number); });
            complete = RenderAll(reader, writer, plan, render, result);
        }
        ending.drain();
        result.stopped = !complete;
        if (!complete)
            sink.keep();
        else if (result.rendered < plan.size()) // the source ended by itself
            sink.finish(plan.at(result.rendered).place);
        else
            sink.finish(plan.total);
    } catch (...) {
        const std::exception_ptr first = std::current_exception();
        try {
            ending.drain();
        } catch (...) { // the same, or a consequence
        }
        sink.keep();
        std::rethrow_exception(first);
    }
    return result;
}

} // namespace fxhost
