#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "clips/FrameSink.h"

namespace fxhost {

struct RenderedFrame {
    Picture picture;
    bool hasFailed = false; // true when the effect reported an error in this frame
    double seconds = 0;     // that rendering took
};

// Writes rendered frames to a sink on background threads.
class WriteBehind {
public:
    // `onWritten` is called after each frame, by one thread at a time. At most `capacity` frames wait. `sink`
    // must outlive this object.
    WriteBehind(FrameSink& sink, std::size_t threads, std::size_t capacity,
                std::function<void(const FrameId&, const RenderedFrame&)> onWritten);
    // Discards the waiting frames, unless drain() was called.
    ~WriteBehind();
    WriteBehind(const WriteBehind&) = delete;
    WriteBehind& operator=(const WriteBehind&) = delete;

    // Waits for space in the queue. Returns false when no more frames are accepted, because writing failed or
    // drain() was called.
    bool add(const FrameId& frame, RenderedFrame rendered);
    // Writes the waiting frames and ends the threads. Call it once, from any thread. Throws what the sink
    // threw.
    void drain();

private:
    struct Item {
        FrameId frame;
        RenderedFrame rendered;
    };
    void work();
    void writeOne(std::unique_lock<std::mutex>& lock);
    void join();

    FrameSink& m_Sink;
    const std::size_t m_Capacity;
    const std::function<void(const FrameId&, const RenderedFrame&)> m_OnWritten;
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::deque<Item> m_Waiting;
    bool m_IsClosed = false;
    std::exception_ptr m_Error;
    std::vector<std::thread> m_Threads;
};

} // namespace fxhost
