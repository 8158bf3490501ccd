#include "host/CommandGuard.h"

#include <utility>

#include "engine/IPlugin.h"

namespace Adapter {

namespace {

std::recursive_mutex& GlobalMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

// For destructors, which must not throw: the command's result is already decided.
template <class Action>
void IgnoreExceptions(Action action) noexcept {
    try {
        action();
    } catch (...) {
    }
}

} // namespace

CommandGuard::CommandGuard() : m_Lock(GlobalMutex()), m_Context(CGLGetCurrentContext()) {}

CommandGuard::~CommandGuard() {
    IgnoreExceptions([this] { ReleaseFrame(); });
    CGLSetCurrentContext(m_Context);
}

IPlugin& CommandGuard::Engine() {
    if (!m_Engine) {
        m_Engine = GetPlugin();
        m_Instance.emplace(*m_Engine);
    }
    return *m_Engine;
}

bool CommandGuard::LockFrame() {
    if (!m_FrameLocked)
        m_FrameLocked = m_Engine->lockFrame();
    return m_FrameLocked;
}

void CommandGuard::ReleaseFrame() {
    if (std::exchange(m_FrameLocked, false))
        m_Engine->releaseFrame();
}

} // namespace Adapter
