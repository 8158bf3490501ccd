#include "gpu/GLLimits.h"

#include <cstdlib>
#include <string_view>

#include "platform/GL.h"

namespace {

std::string_view Text(GLenum name) {
    const auto* const text = reinterpret_cast<const char*>(glGetString(name));
    return text ? text : "";
}

bool HasExtension(std::string_view name) {
    std::string_view rest = Text(GL_EXTENSIONS);
    for (std::size_t end = 0; end != std::string_view::npos; rest = rest.substr(end + 1)) {
        end = rest.find(' ');
        if (rest.substr(0, end) == name)
            return true;
        if (end == std::string_view::npos)
            return false;
    }
    return false;
}

} // namespace

unsigned GLLimits::MaxTextureSize() {
    GLint size = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    return size > 0 ? static_cast<unsigned>(size) : 0;
}

// Swizzle is part of OpenGL 3.3.
bool GLLimits::HasTextureSwizzle() {
    static const bool s_Has = std::atof(Text(GL_VERSION).data()) >= 3.3 ||
                              HasExtension("GL_ARB_texture_swizzle") ||
                              HasExtension("GL_EXT_texture_swizzle");
    return s_Has;
}
