#include "host/CommandGuard.h"

#include <utility>

#include "engine/IPlugin.h"

namespace Adapter {

namespace {

std::recursive_mutex& GlobalMutex() {
    static std::recursive_mutex s_GlobalMutex;
    return s_GlobalMutex;
}

// For destructors: the command's result is settled, nothing more can be reported.
template <class Action>
void Quietly(Action action) noexcept {
    try {
        action();
    } catch (...) {
    }
}

} // namespace

CommandGuard::CommandGuard() : m_Lock(GlobalMutex()), m_Context(CGLGetCurrentContext()) {}

CommandGuard::~CommandGuard() {
    Quietly([this] { ReleaseFrame(); });
    CGLSetCurrentContext(m_Context);
}

bool CommandGuard::LockFrame() {
    if (!m_FrameLocked)
        m_FrameLocked = GetPlugin()->lockFrame();
    return m_FrameLocked;
}

void CommandGuard::ReleaseFrame() {
    if (std::exchange(m_FrameLocked, false))
        GetPlugin()->releaseFrame();
}

FrameLock::FrameLock() : m_Locked(GetPlugin()->lockFrame()) {}

FrameLock::~FrameLock() {
    Quietly([this] { Release(); });
}

void FrameLock::Release() {
    if (std::exchange(m_Locked, false))
        GetPlugin()->releaseFrame();
}

} // namespace Adapter
