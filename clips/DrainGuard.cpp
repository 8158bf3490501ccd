#include "clips/DrainGuard.h"

#include <chrono>
#include <unistd.h>

#include "guard/StopRequest.h"

namespace fxhost {

namespace {

constexpr std::chrono::milliseconds s_PollPeriod{20};

} // namespace

DrainGuard::DrainGuard(WriteBehind& writer, FrameSink& sink)
    : m_Writer(writer), m_Sink(sink), m_Thread([this] { pollForAbandon(); }) {}

DrainGuard::~DrainGuard() {
    m_IsOver = true;
    m_Thread.join();
}

void DrainGuard::drain() {
    {
        const std::lock_guard lock(m_Mutex);
        m_IsClaimed = true;
    }
    m_Writer.drain();
}

void DrainGuard::pollForAbandon() {
    while (!m_IsOver) {
        std::this_thread::sleep_for(s_PollPeriod);
        const std::lock_guard lock(m_Mutex);
        if (!m_IsClaimed && AbandonRequested())
            drainInsteadOfRenderThread();
    }
}

// Keeps the mutex, so that the render thread cannot interfere if it returns after all.
void DrainGuard::drainInsteadOfRenderThread() {
    try {
        m_Writer.drain();
    } catch (...) { // The watchdog has already reported why the run ends.
    }
    m_Sink.keepPartialOutput();
    MarkDrained();
    for (;;)
        pause();
}

} // namespace fxhost
