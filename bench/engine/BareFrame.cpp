#include "bench/engine/BareFrame.h"

#include <cstdio>
#include <cstdlib>

#include "bench/Pairs.h"
#include "platform/GL.h"

namespace {

const char* const s_Vertex = "void main() { gl_Position = gl_Vertex; gl_TexCoord[0] = gl_MultiTexCoord0; }";
const char* const s_Fragment = "uniform sampler2D image;\n"
                               "void main() { vec4 c = texture2D(image, gl_TexCoord[0].xy).gbar;\n"
                               "  gl_FragColor = vec4(1.0 - c.rgb, c.a).argb; }";

unsigned CompileShader(GLenum kind, const char* text) {
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint compiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (!compiled)
        std::abort();
    return shader;
}

GLenum ChannelType(unsigned depth) {
    return depth == 8 ? GL_UNSIGNED_BYTE : depth == 16 ? GL_UNSIGNED_SHORT : GL_FLOAT;
}

GLint InternalFormat(unsigned depth) {
    return depth == 8 ? GL_RGBA : GL_RGBA32F;
}

unsigned MakeTexture() {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    return texture;
}

} // namespace

BareFrame::BareFrame(unsigned width, unsigned height, unsigned depth)
    : m_Width(width), m_Height(height), m_Depth(depth),
      m_Expanded(depth == 16 ? std::size_t{width} * height * 4 : 0) {
    const CGLPixelFormatAttribute attributes[] = {kCGLPFAAccelerated, CGLPixelFormatAttribute(0)};
    CGLPixelFormatObj format = nullptr;
    GLint count = 0;
    CGLChoosePixelFormat(attributes, &format, &count);
    CGLCreateContext(format, nullptr, &m_Context);
    CGLDestroyPixelFormat(format);
    if (!m_Context) {
        std::fprintf(stderr, "no GL context: install libegl-mesa0 libgl1-mesa-dri\n");
        std::exit(1);
    }
    CGLSetCurrentContext(m_Context);
    m_Program = glCreateProgram();
    glAttachShader(m_Program, CompileShader(GL_VERTEX_SHADER, s_Vertex));
    glAttachShader(m_Program, CompileShader(GL_FRAGMENT_SHADER, s_Fragment));
    glLinkProgram(m_Program);
    m_Texture = MakeTexture();
    m_Target = MakeTexture();
    glTexImage2D(GL_TEXTURE_2D, 0, InternalFormat(depth), static_cast<GLsizei>(width),
                 static_cast<GLsizei>(height), 0, GL_RGBA, ChannelType(depth), nullptr);
    glGenFramebuffers(1, &m_Framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_Framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_Target, 0);
    glGenBuffers(1, &m_PackBuffer);
}

BareFrame::~BareFrame() {
    CGLSetCurrentContext(nullptr);
    CGLDestroyContext(m_Context);
}

void BareFrame::Upload(const void* pixels) {
    if (m_Depth == 16) {
        const auto* const from = static_cast<const std::uint16_t*>(pixels);
        for (std::size_t i = 0; i < m_Expanded.size(); ++i)
            m_Expanded[i] = static_cast<std::uint16_t>(2 * (from[i] - (from[i] > 16384)));
        pixels = m_Expanded.data();
    }
    glBindTexture(GL_TEXTURE_2D, m_Texture);
    glTexImage2D(GL_TEXTURE_2D, 0, InternalFormat(m_Depth), static_cast<GLsizei>(m_Width),
                 static_cast<GLsizei>(m_Height), 0, GL_RGBA, ChannelType(m_Depth), pixels);
}

void BareFrame::Draw() {
    glBindFramebuffer(GL_FRAMEBUFFER, m_Framebuffer);
    glViewport(0, 0, static_cast<GLsizei>(m_Width), static_cast<GLsizei>(m_Height));
    glUseProgram(m_Program);
    glBegin(GL_QUADS);
    glTexCoord2i(0, 1), glVertex2i(-1, -1);
    glTexCoord2i(1, 1), glVertex2i(1, -1);
    glTexCoord2i(1, 0), glVertex2i(1, 1);
    glTexCoord2i(0, 0), glVertex2i(-1, 1);
    glEnd();
}

void BareFrame::ReadBack() {
    glBindBuffer(GL_PIXEL_PACK_BUFFER, m_PackBuffer);
    glBufferData(GL_PIXEL_PACK_BUFFER, static_cast<GLsizeiptr>(std::size_t{m_Width} * m_Height * m_Depth / 2),
                 nullptr, GL_STREAM_READ);
    glReadPixels(0, 0, static_cast<GLsizei>(m_Width), static_cast<GLsizei>(m_Height), GL_RGBA,
                 ChannelType(m_Depth), nullptr);
    glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY);
    glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

void BareFrame::Render(const void* pixels) {
    CGLSetCurrentContext(m_Context);
    const auto stage = [&](auto work) {
        return Pairs::Time([&] {
            work();
            if (staged)
                glFinish();
        });
    };
    last.upload = stage([&] { Upload(pixels); });
    last.draw = stage([&] { Draw(); });
    last.readBack = stage([&] { ReadBack(); });
    CGLSetCurrentContext(nullptr);
}
