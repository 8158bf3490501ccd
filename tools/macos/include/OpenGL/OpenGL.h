#pragma once

/* The functions of CGL that this project uses, written from their public documentation. On a Mac the system's
   own OpenGL/OpenGL.h takes the place of this header. */

#include <OpenGL/gl.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _CGLContextObject* CGLContextObj;
typedef struct _CGLPixelFormatObject* CGLPixelFormatObj;

typedef enum { kCGLPFAAccelerated = 73 } CGLPixelFormatAttribute;

typedef enum {
    kCGLNoError = 0,
    kCGLBadAttribute = 10000,
    kCGLBadPixelFormat = 10002,
    kCGLBadContext = 10004,
    kCGLBadValue = 10008,
    kCGLBadAlloc = 10016
} CGLError;

CGLError CGLChoosePixelFormat(const CGLPixelFormatAttribute* attributes, CGLPixelFormatObj* format,
                              GLint* count);
CGLError CGLDestroyPixelFormat(CGLPixelFormatObj format);
CGLError CGLCreateContext(CGLPixelFormatObj format, CGLContextObj share, CGLContextObj* context);
CGLError CGLDestroyContext(CGLContextObj context);
CGLContextObj CGLGetCurrentContext(void);
CGLError CGLSetCurrentContext(CGLContextObj context);
const char* CGLErrorString(CGLError error);

#ifdef __cplusplus
}
#endif
