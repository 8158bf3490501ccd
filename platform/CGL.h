#pragma once

// The CGL functions that the engine calls. On macOS they are the system's. Elsewhere this folder implements
// them with EGL contexts without a drawable, which draw into framebuffer objects only.
//
// Threads: every function may be called from any thread. As in CGL, the current context belongs to the
// calling thread. Unlike in CGL, a context is current on one thread at a time: CGLSetCurrentContext blocks
// until the thread that uses the context makes another one current, destroys it or ends. The caller's own
// context is released while it waits, so that two threads can swap contexts.

#include "platform/GL.h" // first, because it switches deprecation warnings off

#ifdef __APPLE__

#include <OpenGL/OpenGL.h>

#else

using CGLPixelFormatObj = struct PixelFormatRecord*;
using CGLContextObj = struct ContextRecord*;

enum CGLPixelFormatAttribute { kCGLPFAAccelerated = 73 };

enum CGLError {
    kCGLNoError = 0,
    kCGLBadAttribute = 10000,
    kCGLBadPixelFormat = 10002,
    kCGLBadContext = 10004,
    kCGLBadValue = 10008,
    kCGLBadAlloc = 10016,
};

// Finds a format for the attributes, a list that ends with 0. Without OpenGL on the machine *format is null,
// *count is 0, and PlatformGLProblem() returns the reason. The caller destroys the format.
CGLError CGLChoosePixelFormat(const CGLPixelFormatAttribute* attributes, CGLPixelFormatObj* format,
                              GLint* count);
CGLError CGLDestroyPixelFormat(CGLPixelFormatObj format);

// Creates a context of the compatibility profile, which is not current on any thread. `share` must be null or
// a result of this function. On failure *context is null. The caller destroys the context.
CGLError CGLCreateContext(CGLPixelFormatObj format, CGLContextObj share, CGLContextObj* context);
// A context that is current on this thread is released first. One that is current on another thread is
// destroyed when that thread releases it; threads that wait for it get kCGLBadContext. The result is
// kCGLBadContext for null, for unknown and for destroyed contexts.
CGLError CGLDestroyContext(CGLContextObj context);

// Returns the calling thread's context, or null. A context that other code made current through EGL is
// returned too, together with its surfaces and the bound API, so that CGLSetCurrentContext restores exactly
// that state. The other code remains its owner. Each thread can restore at least the last eight such states.
CGLContextObj CGLGetCurrentContext();
// Null makes no context current. On failure the thread has no current context.
CGLError CGLSetCurrentContext(CGLContextObj context);

#endif
