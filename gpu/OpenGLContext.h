#pragma once

#include <cstdint>
#include <pthread.h>

#include "platform/CGL.h"

// A failure of the context. It is thrown inside OpenGLContext only; callers get the number.
enum class OpenGLFault : std::uint32_t {
    NoPixelFormat = 1,
    DestructionFailed = 2,
    CreationFailed = 5,
};

// The engine's own GL context. It has no window: everything is drawn into framebuffer objects.
//
// Threads: functions may be called from any thread, in the order makeCurrent, lockFrame, GL work,
// releaseFrame, releaseCurrent. Only one previous context is remembered, so nested makeCurrent calls do not
// restore the outermost one.
class OpenGLContext {
public:
    // The results of the functions below that return an int.
    enum Error : int {
        NoError = 0,
        NoPixelFormat = static_cast<int>(OpenGLFault::NoPixelFormat),
        DestructionFailed = static_cast<int>(OpenGLFault::DestructionFailed),
        CreationFailed = static_cast<int>(OpenGLFault::CreationFailed),
    };

    OpenGLContext();
    OpenGLContext(const OpenGLContext&) = delete;
    OpenGLContext& operator=(const OpenGLContext&) = delete;
    // Does not destroy the GL context; release() does.
    virtual ~OpenGLContext();

    // Creates the GL context. Called once. The flag has no meaning.
    int init(bool);
    // Destroys the GL context. Afterwards no context is current on this thread.
    int release();

    // Remembers the thread's current context and makes the engine's context current. Waits while another
    // thread uses it.
    int makeCurrent();
    // Makes the context current that makeCurrent found, which may be none. When that fails, for example
    // because its owner has destroyed it, no context is current afterwards, so that other threads can use the
    // engine's.
    void releaseCurrent();

    // Lock and unlock the recursive frame mutex. lockFrame returns false when the mutex cannot be locked.
    bool lockFrame();
    void releaseFrame();

    // Does nothing, because there is no window.
    void flip() {}

private:
    pthread_mutex_t m_FrameMutex;
    pthread_mutexattr_t m_MutexAttributes;
    CGLContextObj m_Context = nullptr;
    CGLContextObj m_Previous = nullptr;
};
