#pragma once

// The CGL calls that the engine uses. On macOS they are the system's; elsewhere this folder supplies them
// over EGL contexts without a drawable, which draw into framebuffer objects only.
//
// Threads: every call may come from any thread. As in CGL, "current" belongs to the calling thread.
// Other than in CGL a context is current on one thread at a time: CGLSetCurrentContext sleeps until the
// thread that holds the context makes something else current, destroys it or ends. The caller's own
// context is let go while it waits, so that two threads may swap contexts.

#ifdef __APPLE__

#include <OpenGL/OpenGL.h>
#include <OpenGL/gl.h>

#else

#include "platform/GL.h"

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

// Finds a format for the attributes, a list that 0 ends. Without OpenGL on the machine *format is null,
// *count 0, and PlatformGLProblem() tells why. The caller destroys the format.
CGLError CGLChoosePixelFormat(const CGLPixelFormatAttribute* attributes, CGLPixelFormatObj* format,
                              GLint* count);
CGLError CGLDestroyPixelFormat(CGLPixelFormatObj format);

// Makes a compatibility-profile context, not current anywhere. share must be null or made here. On failure
// *context is null. The caller destroys the context.
CGLError CGLCreateContext(CGLPixelFormatObj format, CGLContextObj share, CGLContextObj* context);
// A context that is current on this thread is let go first. One that another thread holds dies when that
// thread lets go of it; threads that wait for it get kCGLBadContext. Null, unknown and destroyed contexts
// give kCGLBadContext.
CGLError CGLDestroyContext(CGLContextObj context);

// The calling thread's context or null. A context that other code made current through EGL is reported
// too, with its surfaces and the bound API, so that CGLSetCurrentContext brings back exactly that state;
// such a context stays that code's property.
CGLContextObj CGLGetCurrentContext();
// Null makes no context current. On failure the thread has no context.
CGLError CGLSetCurrentContext(CGLContextObj context);

#endif
