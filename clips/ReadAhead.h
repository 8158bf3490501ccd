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

// Makes pictures ahead of their use, on background threads, and returns them in order.
class ReadAhead {
public:
    // `make` is called once for each index from 0 to count - 1, in ascending order, by `threads` threads at
    // the same time. It returns nothing when the pictures end early. At most `capacity` pictures wait.
    ReadAhead(std::size_t count, std::size_t threads, std::size_t capacity,
              std::function<std::optional<Picture>(std::size_t)> make);
    // Waits for running calls of `make`.
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // Waits for the next picture. Returns nothing after the last one. Throws what `make` threw for this
    // picture. One thread.
    std::optional<Picture> next();

private:
    struct Result {
        std::optional<Picture> picture;
        std::exception_ptr error;
    };
    void work();

    const std::size_t m_Count, m_Capacity;
    const std::function<std::optional<Picture>(std::size_t)> m_Make;
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::map<std::size_t, Result> m_Ready;
    std::size_t m_Started = 0, m_Taken = 0;
    bool m_HasEnded = false;
    std::vector<std::thread> m_Threads;
};

} // namespace fxhost
