#include "gpu/RenderTarget.h"

#include <algorithm>
#include <cmath>

#include "gpu/PixelDepth.h"
#include "platform/GL.h"

RenderTarget RenderTarget::invalid;
RenderTarget RenderTarget::screen;
unsigned RenderTarget::m_CurrentFBO = 0;

namespace {

// A fixed buffer name, never generated: the pack buffer is one for the whole process.
constexpr GLuint s_PackBuffer = 4863;

// Truncates; scripts may give numbers that no int holds.
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
    if (usable())
        release();
    Texture::init(width, height, depth, true);
    glGenFramebuffers(1, &m_Framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_Framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, id(), 0);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return usable();
}

void RenderTarget::release() {
    Texture::release();
    if (m_Framebuffer)
        glDeleteFramebuffers(1, &m_Framebuffer);
    m_Framebuffer = 0;
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
    bind(0, 0, static_cast<int>(width()), static_cast<int>(height()));
    glBindBuffer(GL_PIXEL_PACK_BUFFER, s_PackBuffer);
    const std::uint32_t size = width() * height() * PixelDepth::ForSizes(depth()) * 4 / 8;
    glBufferData(GL_PIXEL_PACK_BUFFER, size, nullptr, GL_STREAM_READ);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glReadPixels(0, 0, static_cast<GLsizei>(width()), static_cast<GLsizei>(height()), GL_RGBA,
                 getGLType(depth()), nullptr);
    return glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY);
}

void RenderTarget::grabEnd(void*) {
    glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

void RenderTarget::blit(RenderTarget& destination, bool flip, bool linear) {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_Framebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, destination.m_Framebuffer);
    const auto right = static_cast<GLint>(destination.width());
    const auto top = static_cast<GLint>(destination.height());
    glBlitFramebuffer(0, 0, static_cast<GLint>(width()), static_cast<GLint>(height()), 0, flip ? top : 0,
                      right, flip ? 0 : top, GL_COLOR_BUFFER_BIT, linear ? GL_LINEAR : GL_NEAREST);
}
