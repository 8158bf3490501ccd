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

// Hands rendered frames to a sink on threads of its own.
class WriteBehind {
public:
    // `written` is called after each frame, by one thread at a time. Never more than `room` frames wait.
    WriteBehind(FrameSink& sink, std::size_t threads, std::size_t room, std::function<void()> written);
    // Gives up the frames that still wait, unless drain() came first.
    ~WriteBehind();
    WriteBehind(const WriteBehind&) = delete;
    WriteBehind& operator=(const WriteBehind&) = delete;

    // Waits for room; false when no more frames are taken, because writing failed or drain() was called.
    bool add(const FrameId& frame, Picture picture);
    // Writes what waits and ends the threads. Any thread, once. Throws what the sink threw.
    void drain();
    // Whether the sink threw; frames are not taken any more.
    bool failed();

private:
    struct Item {
        FrameId frame;
        Picture picture;
    };
    void work();
    void join();

    FrameSink& m_Sink;
    const std::size_t m_Room;
    const std::function<void()> m_Written;
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::deque<Item> m_Waiting;
    bool m_Closed = false;
    std::exception_ptr m_Error;
    std::vector<std::thread> m_Threads;
};

} // namespace fxhost
