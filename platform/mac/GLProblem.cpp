#include "platform/GLProblem.h"

#include "platform/CGL.h"

std::string PlatformGLProblem() {
    const CGLPixelFormatAttribute attributes[] = {kCGLPFAAccelerated,
                                                  static_cast<CGLPixelFormatAttribute>(0)};
    CGLPixelFormatObj format = nullptr;
    GLint count = 0;
    const CGLError error = CGLChoosePixelFormat(attributes, &format, &count);
    if (!format)
        return std::string("no accelerated OpenGL pixel format: ") + CGLErrorString(error);
    CGLDestroyPixelFormat(format);
    return {};
}
