#include "gpu/GLErrors.h"

#include "platform/GL.h"

#ifndef NDEBUG
#include <cstdio>
#include <cstdlib>
#endif

namespace {

constexpr int s_MostFlags = 16; // a lost context reports its error for ever

} // namespace

void GLErrors::Clear() {
    for (int i = 0; i < s_MostFlags && glGetError() != GL_NO_ERROR; ++i) {
    }
}

bool GLErrors::None() {
    const bool none = glGetError() == GL_NO_ERROR;
    if (!none)
        Clear();
    return none;
}

#ifndef NDEBUG
void GLErrors::Check(const char* where) {
    const GLenum error = glGetError();
    if (error == GL_NO_ERROR)
        return;
    std::fprintf(stderr, "%s: OpenGL error 0x%04x\n", where, error);
    std::abort();
}
#endif
