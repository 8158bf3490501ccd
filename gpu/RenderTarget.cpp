#include "gpu/RenderTarget.h"

#include <algorithm>
#include <cmath>

#include "gpu/GLErrors.h"
#include "gpu/PixelDepth.h"
#include "platform/GL.h"

RenderTarget RenderTarget::invalid;
RenderTarget RenderTarget::screen;
unsigned RenderTarget::m_CurrentFBO = 0;

namespace {

// The name of the only pack buffer. It is fixed instead of generated.
constexpr GLuint s_PackBuffer = 4863;

// Truncates. Scripts may pass NaN and numbers that do not fit into an int.
int ToInt(float number) {
    constexpr float limit = 1 << 30;
    if (std::isnan(number))
        return 0;
    return static_cast<int>(std::clamp(number, -limit, limit));
}

} // namespace

RenderTarget::~RenderTarget() {
    RenderTarget::release();
}

bool RenderTarget::init(unsigned width, unsigned height, unsigned depth) {
    if (m_Framebuffer || id())
        release();
    if (!Texture::init(width, height, depth, true))
        return false;
    glGenFramebuffers(1, &m_Framebuffer);
    if (!m_Framebuffer || !attachAndClear()) {
        release();
        fail("OpenGL cannot draw into textures of " + std::to_string(PixelDepth::Stored(depth)) +
             " bits per channel");
    }
    GLErrors::Check("RenderTarget::init");
    return usable();
}

bool RenderTarget::attachAndClear() {
    glBindFramebuffer(GL_FRAMEBUFFER, m_Framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, id(), 0);
    const bool isComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    if (isComplete) {
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return isComplete;
}

void RenderTarget::release() {
    grabEnd(nullptr);
    Texture::release();
    if (m_Framebuffer)
        glDeleteFramebuffers(1, &m_Framebuffer);
    m_Framebuffer = 0;
    GLErrors::Check("RenderTarget::release");
}

void RenderTarget::bind(int x, int y, int viewWidth, int viewHeight) {
    glBindFramebuffer(GL_FRAMEBUFFER, m_Framebuffer);
    glViewport(x, y, viewWidth, viewHeight);
    m_CurrentFBO = m_Framebuffer;
}

void RenderTarget::set(const Vector4* rect) {
    if (rect && rect->z > 0.0f && rect->w > 0.0f)
        bind(ToInt(rect->x), ToInt(rect->y), ToInt(rect->z), ToInt(rect->w));
    else
        bind(0, 0, static_cast<int>(width()), static_cast<int>(height()));
}

const void* RenderTarget::grabBegin() {
    if (!usable())
        return nullptr;
    bind(0, 0, static_cast<int>(width()), static_cast<int>(height()));
    GLErrors::Clear();
    glBindBuffer(GL_PIXEL_PACK_BUFFER, s_PackBuffer);
    const std::size_t size = PixelDepth::RowBytes(width(), depth()) * height();
    glBufferData(GL_PIXEL_PACK_BUFFER, static_cast<GLsizeiptr>(size), nullptr, GL_STREAM_READ);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glReadPixels(0, 0, static_cast<GLsizei>(width()), static_cast<GLsizei>(height()), GL_RGBA,
                 getGLType(depth()), nullptr);
    // After an error the buffer may be smaller than the pixels, or its content undefined.
    const void* const pixels = GLErrors::None() ? glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY) : nullptr;
    m_IsMapped = pixels != nullptr;
    if (!m_IsMapped)
        glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    fail(m_IsMapped ? "" : "OpenGL has no memory for reading the pixels");
    GLErrors::Clear();
    return pixels;
}

void RenderTarget::grabEnd(void*) {
    if (!m_IsMapped)
        return;
    m_IsMapped = false;
    glBindBuffer(GL_PIXEL_PACK_BUFFER, s_PackBuffer);
    glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    GLErrors::Check("RenderTarget::grabEnd");
}

void RenderTarget::blit(RenderTarget& destination, bool flip, bool linear) {
    if (!usable() || !destination.usable())
        return;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_Framebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, destination.m_Framebuffer);
    const auto right = static_cast<GLint>(destination.width());
    const auto top = static_cast<GLint>(destination.height());
    glBlitFramebuffer(0, 0, static_cast<GLint>(width()), static_cast<GLint>(height()), 0, flip ? top : 0,
                      right, flip ? 0 : top, GL_COLOR_BUFFER_BIT, linear ? GL_LINEAR : GL_NEAREST);
    GLErrors::Check("RenderTarget::blit");
}
