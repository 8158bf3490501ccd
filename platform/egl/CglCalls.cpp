#include "platform/CGL.h"
#include "platform/GLProblem.h"
#include "platform/egl/ContextRegistry.h"

// There is only one format, the one of the chosen display.
struct PixelFormatRecord {};

CGLError CGLChoosePixelFormat(const CGLPixelFormatAttribute* attributes, CGLPixelFormatObj* format,
                              GLint* count) {
    *format = nullptr;
    *count = 0;
    for (; *attributes != 0; ++attributes)
        if (*attributes != kCGLPFAAccelerated)
            return kCGLBadAttribute;
    if (!GetContextRegistry().HasDisplay())
        return kCGLBadPixelFormat;
    *format = new PixelFormatRecord;
    *count = 1;
    return kCGLNoError;
}

CGLError CGLDestroyPixelFormat(CGLPixelFormatObj format) {
    delete format;
    return kCGLNoError;
}

CGLError CGLCreateContext(CGLPixelFormatObj format, CGLContextObj share, CGLContextObj* context) {
    *context = nullptr;
    if (!format)
        return kCGLBadPixelFormat;
    *context = GetContextRegistry().Create(share);
    return *context ? kCGLNoError : kCGLBadAlloc;
}

CGLError CGLDestroyContext(CGLContextObj context) {
    return GetContextRegistry().Destroy(context);
}

CGLContextObj CGLGetCurrentContext() {
    return GetContextRegistry().Current();
}

CGLError CGLSetCurrentContext(CGLContextObj context) {
    return GetContextRegistry().MakeCurrent(context);
}

std::string PlatformGLProblem() {
    return GetContextRegistry().Problem();
}
