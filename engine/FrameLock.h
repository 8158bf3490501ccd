#pragma once

#include <utility>

#include "engine/IPlugin.h"

// Holds the engine's frame lock for a scope, if it can be taken. One at a time restores the GL context of the
// thread; nested ones do not, see IPlugin::lockFrame.
class FrameLock {
public:
    explicit FrameLock(IPlugin& engine) : m_Engine(engine), m_IsLocked(engine.lockFrame()) {}
    ~FrameLock() {
        try {
            release();
        } catch (...) { // a destructor has nobody to report to
        }
    }
    FrameLock(const FrameLock&) = delete;
    FrameLock& operator=(const FrameLock&) = delete;

    // False when the engine refused the lock.
    explicit operator bool() const { return m_IsLocked; }
    // Releases the lock before the end of the scope, and reports failures, which the destructor cannot.
    void release() {
        if (std::exchange(m_IsLocked, false))
            m_Engine.releaseFrame();
    }

private:
    IPlugin& m_Engine;
    bool m_IsLocked;
};
