#pragma once

#include <EGL/egl.h>

#include <string>

// An initialised display that can make desktop OpenGL contexts without a drawable.
struct GLDisplay {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr; // null where the display makes contexts without one
};

// Looks for a display, best first: a hardware device, Mesa without a window system (which may render in
// software), any device, the default display. Null handle and a filled problem when there is none. The
// display is never terminated: other code in the process may have the same one.
GLDisplay ChooseGLDisplay(std::string& problem);

// A compatibility-profile context of the newest version; EGL_NO_CONTEXT on failure. The calling thread's
// bound API stays what it was.
EGLContext CreateGLContext(const GLDisplay& where, EGLContext share);

// "EGL_BAD_MATCH" and the like for what eglGetError returned.
std::string EglErrorName(EGLint error);
