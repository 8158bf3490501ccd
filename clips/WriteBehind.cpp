#include "clips/WriteBehind.h"

namespace fxhost {

WriteBehind::WriteBehind(FrameSink& sink, std::size_t threads, std::size_t capacity,
                         std::function<void(const FrameId&, const RenderedFrame&)> onWritten)
    : m_Sink(sink), m_Capacity(capacity), m_OnWritten(std::move(onWritten)) {
    for (std::size_t i = 0; i < threads; ++i)
        m_Threads.emplace_back([this] { work(); });
}

WriteBehind::~WriteBehind() {
    {
        const std::lock_guard lock(m_Mutex);
        if (!m_IsClosed)
            m_Waiting.clear();
    }
    join();
}

bool WriteBehind::add(const FrameId& frame, RenderedFrame rendered) {
    std::unique_lock lock(m_Mutex);
    m_Changed.wait(lock, [this] { return m_IsClosed || m_Error || m_Waiting.size() < m_Capacity; });
    if (m_IsClosed || m_Error)
        return false;
    m_Waiting.push_back({frame, std::move(rendered)});
    lock.unlock();
    m_Changed.notify_all();
    return true;
}

void WriteBehind::work() {
    std::unique_lock lock(m_Mutex);
    for (;;) {
        m_Changed.wait(lock, [this] { return m_IsClosed || m_Error || !m_Waiting.empty(); });
        if (m_Error || m_Waiting.empty())
            return;
        writeOne(lock);
    }
}

// Releases the lock while the sink writes.
void WriteBehind::writeOne(std::unique_lock<std::mutex>& lock) {
    const Item item = std::move(m_Waiting.front());
    m_Waiting.pop_front();
    lock.unlock();
    m_Changed.notify_all();
    std::exception_ptr error;
    try {
        if (item.rendered.hasFailed)
            m_Sink.writeFailed(item.frame, item.rendered.picture);
        else
            m_Sink.write(item.frame, item.rendered.picture);
    } catch (...) {
        error = std::current_exception();
    }
    lock.lock();
    if (error)
        m_Error = m_Error ? m_Error : error;
    else
        m_OnWritten(item.frame, item.rendered);
    m_Changed.notify_all();
}

void WriteBehind::join() {
    {
        const std::lock_guard lock(m_Mutex);
        m_IsClosed = true;
    }
    m_Changed.notify_all();
    for (std::thread& thread : m_Threads)
        thread.join();
    m_Threads.clear();
}

void WriteBehind::drain() {
    join();
    if (m_Error)
        std::rethrow_exception(m_Error);
}

} // namespace fxhost
