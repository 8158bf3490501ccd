#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "pictures/Picture.h"

namespace fxhost {

// Makes pictures on threads of its own, ahead of whoever takes them, and gives them out in order.
class ReadAhead {
public:
    // `make` is called for 0 to count - 1, each once, in this order but by `threads` threads at once. Never
    // more than `room` pictures wait.
    ReadAhead(std::size_t count, std::size_t threads, std::size_t room,
              std::function<std::optional<Picture>(std::size_t)> make);
    // Waits for calls of `make` that are under way.
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // The next picture; what `make` threw for it is thrown here. Nothing after the last one, or from
    // where `make` gave nothing.
    std::optional<Picture> next();

private:
    struct Result {
        std::optional<Picture> picture;
        std::exception_ptr error;
    };
    void work();

    const std::size_t m_Count, m_Room;
    const std::function<std::optional<Picture>(std::size_t)> m_Make;
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::map<std::size_t, Result> m_Ready;
    std::size_t m_Begun = 0, m_Taken = 0;
    bool m_Ended = false;
    std::vector<std::thread> m_Threads;
};

} // namespace fxhost
