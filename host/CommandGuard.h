#pragma once

#include <mutex>
#include <optional>

#include "host/Instance.h"
#include "platform/CGL.h"

namespace Adapter {

// Surrounds every command. The constructor locks the process-wide recursive mutex and remembers the GL
// context of the calling thread. The destructor releases a frame lock that the command still holds, makes the
// remembered context current again and unlocks the mutex, in this order.
class CommandGuard {
public:
    CommandGuard();
    ~CommandGuard();
    CommandGuard(const CommandGuard&) = delete;
    CommandGuard& operator=(const CommandGuard&) = delete;

    // The engine object of the process. The first call creates it and may throw.
    IPlugin& Engine();
    // Takes the engine's frame lock, at most once per command. Returns false when the engine refuses it.
    // Needs a preceding call of Engine.
    bool LockFrame();
    // Releases the lock before the end of the command; does nothing when this command does not hold it.
    void ReleaseFrame();

private:
    std::unique_lock<std::recursive_mutex> m_Lock;
    CGLContextObj m_Context;
    IPlugin* m_Engine = nullptr;
    std::optional<InstanceScope> m_Instance;
    bool m_FrameLocked = false;
};

} // namespace Adapter
