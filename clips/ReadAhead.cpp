#include "clips/ReadAhead.h"

namespace fxhost {

ReadAhead::ReadAhead(std::size_t count, std::size_t threads, std::size_t capacity,
                     std::function<std::optional<Picture>(std::size_t)> make)
    : m_Count(count), m_Capacity(capacity), m_Make(std::move(make)) {
    for (std::size_t i = 0; i < threads; ++i)
        m_Threads.emplace_back([this] { work(); });
}

ReadAhead::~ReadAhead() {
    {
        const std::lock_guard lock(m_Mutex);
        m_HasEnded = true;
    }
    m_Changed.notify_all();
    for (std::thread& thread : m_Threads)
        thread.join();
}

void ReadAhead::work() {
    std::unique_lock lock(m_Mutex);
    for (;;) {
        m_Changed.wait(
            lock, [this] { return m_HasEnded || m_Started == m_Count || m_Started < m_Taken + m_Capacity; });
        if (m_HasEnded || m_Started == m_Count)
            return;
        const std::size_t index = m_Started++;
        lock.unlock();
        Result result;
        try {
            result.picture = m_Make(index);
        } catch (...) {
            result.error = std::current_exception();
        }
        lock.lock();
        m_HasEnded |= !result.picture; // Later pictures are not needed.
        m_Ready.emplace(index, std::move(result));
        m_Changed.notify_all();
    }
}

std::optional<Picture> ReadAhead::next() {
    std::unique_lock lock(m_Mutex);
    if (m_Taken == m_Count)
        return std::nullopt;
    m_Changed.wait(lock, [this] { return m_Ready.contains(m_Taken); });
    Result result = std::move(m_Ready.extract(m_Taken).mapped());
    ++m_Taken;
    lock.unlock();
    m_Changed.notify_all();
    if (result.error)
        std::rethrow_exception(result.error);
    return std::move(result.picture);
}

} // namespace fxhost
