#pragma once

#include <EGL/egl.h>

#include <string>

// An initialised display that can create desktop OpenGL contexts without a drawable.
struct GLDisplay {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr; // null when the display needs none
};

// Returns the first display that works of: hardware devices, Mesa without a window system (which may render
// in software), other devices, the default display. When none works, its handle is null and `problem` has the
// reason. The display is never terminated, because other code in the process may use the same one.
GLDisplay ChooseGLDisplay(std::string& problem);

// Creates a context of the compatibility profile and the newest version. Returns EGL_NO_CONTEXT on failure.
// The API that the calling thread has bound stays the same.
EGLContext CreateGLContext(const GLDisplay& where, EGLContext share);

// Returns the name of a result of eglGetError, for example "EGL_BAD_MATCH".
std::string EglErrorName(EGLint error);
