#pragma once

#include <mutex>

#include "host/Instance.h"
#include "platform/CGL.h"

namespace Adapter {

// Stands around every command: takes the process-wide recursive mutex and remembers the caller's GL context.
// On destruction it releases a frame lock that the command still holds, makes the remembered context current
// again and gives the mutex back, in this order.
class CommandGuard {
public:
    CommandGuard();
    ~CommandGuard();
    CommandGuard(const CommandGuard&) = delete;
    CommandGuard& operator=(const CommandGuard&) = delete;

    // Takes the engine's frame lock, once a command. False when the engine refuses it.
    bool LockFrame();
    // Releases it early; does nothing when this command does not hold it.
    void ReleaseFrame();

private:
    std::unique_lock<std::recursive_mutex> m_Lock;
    CGLContextObj m_Context;
    InstanceScope m_Instance;
    bool m_FrameLocked = false;
};

// A frame lock for one upload inside a command, released with the scope.
class FrameLock {
public:
    FrameLock();
    ~FrameLock();
    FrameLock(const FrameLock&) = delete;
    FrameLock& operator=(const FrameLock&) = delete;

    explicit operator bool() const { return m_Locked; }
    // Releases before the end of the scope, so that a failure in it is not swallowed.
    void Release();

private:
    bool m_Locked;
};

} // namespace Adapter
