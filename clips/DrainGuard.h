#pragma once

#include <atomic>
#include <mutex>
#include <thread>

#include "clips/FrameSink.h"
#include "clips/WriteBehind.h"

namespace fxhost {

// Makes sure that the queued frames are written exactly once: by the render thread at its end, or by a thread
// of this object when the watchdog gives up a render thread that hangs.
class DrainGuard {
public:
    // Both must outlive this object.
    DrainGuard(WriteBehind& writer, FrameSink& sink);
    ~DrainGuard();
    DrainGuard(const DrainGuard&) = delete;
    DrainGuard& operator=(const DrainGuard&) = delete;

    // Writes the queued frames. For the render thread, which blocks forever here when it was given up before.
    // Throws what the sink threw.
    void drain();

private:
    void pollForAbandon();
    [[noreturn]] void drainInsteadOfRenderThread();

    WriteBehind& m_Writer;
    FrameSink& m_Sink;
    std::mutex m_Mutex;
    bool m_IsClaimed = false; // true when the render thread drains
    std::atomic<bool> m_IsOver{false};
    std::thread m_Thread;
};

} // namespace fxhost
