#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace fxhost {

// How a child process ended.
struct ChildEnd {
    enum class How { Exited, Crashed, Silent } how = How::Exited;
    int status = 0; // exit status
    int signal = 0; // that ended it
};

using SendLine = std::function<void(const std::string& line)>;

// Runs `work` in a child process and hands every line that it sends to `heard`, in this process. When nothing
// comes for `patience`, the child is killed. Call before anything made threads or a GL context. `work`'s
// result is the child's exit status; it must not throw. Throws std::runtime_error when no process can be
// made.
ChildEnd RunInChild(const std::function<int(const SendLine&)>& work, std::chrono::milliseconds patience,
                    const std::function<void(const std::string& line)>& heard);

} // namespace fxhost
