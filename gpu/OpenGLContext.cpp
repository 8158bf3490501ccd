#include "gpu/OpenGLContext.h"

#include <memory>
#include <type_traits>

#include "platform/GL.h"

namespace {

// Runs steps that may throw a fault, and converts it to the number that callers get.
template <class Steps>
int FaultNumber(Steps steps) {
    try {
        steps();
    } catch (OpenGLFault fault) {
        return static_cast<int>(fault);
    }
    return OpenGLContext::NoError;
}

struct PixelFormatDestroyer {
    void operator()(CGLPixelFormatObj format) const { CGLDestroyPixelFormat(format); }
};
using PixelFormat = std::unique_ptr<std::remove_pointer_t<CGLPixelFormatObj>, PixelFormatDestroyer>;

CGLContextObj CreateContext() {
    const CGLPixelFormatAttribute attributes[] = {kCGLPFAAccelerated,
                                                  static_cast<CGLPixelFormatAttribute>(0)};
    CGLPixelFormatObj chosen = nullptr;
    GLint count = 0;
    CGLChoosePixelFormat(attributes, &chosen, &count);
    if (!chosen)
        throw OpenGLFault::NoPixelFormat;
    const PixelFormat format(chosen);
    CGLContextObj context = nullptr;
    CGLCreateContext(format.get(), nullptr, &context);
    if (!context)
        throw OpenGLFault::CreationFailed;
    return context;
}

} // namespace

OpenGLContext::OpenGLContext() {
    pthread_mutexattr_init(&m_MutexAttributes);
    pthread_mutexattr_settype(&m_MutexAttributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&m_FrameMutex, &m_MutexAttributes);
}

OpenGLContext::~OpenGLContext() {
    pthread_mutex_destroy(&m_FrameMutex);
    pthread_mutexattr_destroy(&m_MutexAttributes);
}

int OpenGLContext::init(bool) {
    return FaultNumber([this] {
        m_Context = CreateContext();
        glFlush();
    });
}

int OpenGLContext::release() {
    return FaultNumber([this] {
        CGLSetCurrentContext(nullptr);
        if (CGLDestroyContext(m_Context) != kCGLNoError)
            throw OpenGLFault::DestructionFailed;
    });
}

int OpenGLContext::makeCurrent() {
    const CGLContextObj before = CGLGetCurrentContext();
    CGLSetCurrentContext(m_Context);
    // Stored only now, because until here another thread may have used the context and needed its own value.
    m_Previous = before;
    return NoError;
}

void OpenGLContext::releaseCurrent() {
    if (CGLSetCurrentContext(m_Previous) != kCGLNoError)
        CGLSetCurrentContext(nullptr);
}

bool OpenGLContext::lockFrame() {
    return pthread_mutex_lock(&m_FrameMutex) == 0;
}

void OpenGLContext::releaseFrame() {
    pthread_mutex_unlock(&m_FrameMutex);
}
