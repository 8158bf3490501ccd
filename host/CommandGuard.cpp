#include "host/CommandGuard.h"

#include <utility>

#include "engine/IPlugin.h"

namespace Adapter {

namespace {

std::recursive_mutex& GlobalMutex() {
    static std::recursive_mutex s_GlobalMutex;
    return s_GlobalMutex;
}

unsigned s_Depth = 0; // commands running inside each other, counted under the mutex

// For destructors: the command's result is settled, nothing more can be reported.
template <class Action>
void Quietly(Action action) noexcept {
    try {
        action();
    } catch (...) {
    }
}

} // namespace

CommandGuard::CommandGuard()
    : m_Lock(GlobalMutex()), m_Context(CGLGetCurrentContext()), m_Outer(SelectedInstance()) {
    ++s_Depth;
}

CommandGuard::~CommandGuard() {
    Quietly([this] { ReleaseFrame(); });
    if (--s_Depth > 0 && m_Outer != SelectedInstance())
        Quietly([this] { SelectInstance(*GetPlugin(), m_Outer); });
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
