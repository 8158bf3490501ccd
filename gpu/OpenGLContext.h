#pragma once

#include <cstdint>
#include <pthread.h>

#include "platform/CGL.h"

// What goes wrong with the context; thrown inside OpenGLContext only, callers see the number.
enum class OpenGLFault : std::uint32_t {
    NoPixelFormat = 1,
    DestructionFailed = 2,
    CreationFailed = 5,
};

// The engine's own GL context, without a window: everything is drawn into framebuffer objects.
//
// Threads: any, in this order: makeCurrent, lockFrame, GL work, releaseFrame, releaseCurrent. One previous
// context is remembered, so nested makeCurrent calls do not restore the outermost one.
class OpenGLContext {
public:
    // What the functions below that give an int return.
    enum Error : int {
        NoError = 0,
        NoPixelFormat = static_cast<int>(OpenGLFault::NoPixelFormat),
        DestructionFailed = static_cast<int>(OpenGLFault::DestructionFailed),
        CreationFailed = static_cast<int>(OpenGLFault::CreationFailed),
    };

    OpenGLContext();
    OpenGLContext(const OpenGLContext&) = delete;
    OpenGLContext& operator=(const OpenGLContext&) = delete;
    // Leaves the GL context alone: release() destroys that.
    virtual ~OpenGLContext();

    // Makes the GL context; called once. The flag has no meaning.
    int init(bool);
    // Destroys the GL context. No context is current on this thread afterwards.
    int release();

    // Remembers the thread's current context and makes the engine's current; may wait for another thread.
    int makeCurrent();
    // Brings back the context that makeCurrent found, which may be none.
    void releaseCurrent();

    // The frame mutex, recursive. lockFrame is false when the mutex cannot be locked.
    bool lockFrame();
    void releaseFrame();

    // Nothing to present without a window.
    void flip() {}

private:
    pthread_mutex_t m_FrameMutex;
    pthread_mutexattr_t m_MutexAttributes;
    CGLContextObj m_Context = nullptr;
    CGLContextObj m_Previous = nullptr;
};
