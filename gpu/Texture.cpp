#include "gpu/Texture.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "gpu/ImageDecoder.h"
#include "gpu/PixelDepth.h"
#include "gpu/Surface.h"
#include "platform/GL.h"
#include "utils/Utils.h"

Texture Texture::invalid;

namespace {

constexpr GLint s_StoredOrder[] = {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA};
// Red, green, blue, alpha in memory; shaders see alpha first like everywhere else.
constexpr GLint s_AlphaFirst[] = {GL_ALPHA, GL_RED, GL_GREEN, GL_BLUE};

// Every GL that runs the engine takes textures of this many pixels a side.
constexpr unsigned s_SafeExtent = 8192;

// Reading into memory with a row length in pixels; puts back what the caller had bound.
class PackScope {
public:
    explicit PackScope(GLint rowLength) {
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &m_Texture);
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &m_Buffer);
        glGetIntegerv(GL_PACK_ROW_LENGTH, &m_RowLength);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
        glPixelStorei(GL_PACK_ROW_LENGTH, rowLength);
    }
    ~PackScope() {
        glPixelStorei(GL_PACK_ROW_LENGTH, m_RowLength);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, static_cast<GLuint>(m_Buffer));
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(m_Texture));
    }
    PackScope(const PackScope&) = delete;
    PackScope& operator=(const PackScope&) = delete;

private:
    GLint m_Texture = 0;
    GLint m_Buffer = 0;
    GLint m_RowLength = 0;
};

GLint InternalFormat(unsigned depth) {
    return depth < 9 ? GL_RGBA : GL_RGBA32F;
}

// Brings 0..32768 to 0..65534: 2v, above the middle 2(v - 1).
void ExpandRow(const std::uint16_t* __restrict from, std::uint16_t* __restrict to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<std::uint16_t>(2 * (from[i] - (from[i] > 16384)));
}

// GL counts the distance between rows in pixels, upwards.
bool IsRowLength(long stride, unsigned depth) {
    return stride >= 0 && stride % (4 * static_cast<long>(PixelDepth::BytesPerChannel(depth))) == 0;
}

// Rows of any stride, a negative one included, one directly after the other.
std::vector<unsigned char> PackRows(const void* pixels, std::size_t rowBytes, unsigned height, long stride) {
    std::vector<unsigned char> packed(rowBytes * height);
    const std::size_t available = std::min(rowBytes, static_cast<std::size_t>(std::abs(stride)));
    for (unsigned y = 0; y < height; ++y)
        std::memcpy(packed.data() + y * rowBytes, static_cast<const unsigned char*>(pixels) + y * stride,
                    available);
    return packed;
}

} // namespace

Texture::~Texture() {
    m_CopyPending = false; // nobody can ask any more
    Texture::release();
}

bool Texture::init(unsigned width, unsigned height, unsigned depth, bool argbOrder) {
    if (m_Texture)
        release();
    glGenTextures(1, &m_Texture);
    const long rowBytes = static_cast<long>(std::size_t(PixelDepth::ForSizes(depth)) * width / 8);
    grabPixels(nullptr, width, height, depth, rowBytes, argbOrder, false);
    m_Stride = 0;
    return true;
}

void Texture::release() {
    fetchPixelCopy();
    if (m_Texture)
        glDeleteTextures(1, &m_Texture);
    m_Texture = 0;
}

void Texture::grabPixels(const void* pixels, unsigned width, unsigned height, unsigned depth, long stride,
                         bool argbOrder, bool expand16) {
    if (pixels && !IsRowLength(stride, depth)) {
        const std::size_t rowBytes = PixelDepth::RowBytes(width, depth);
        const auto packed = PackRows(pixels, rowBytes, height, stride);
        grabPixels(packed.data(), width, height, depth, static_cast<long>(rowBytes), argbOrder, expand16);
        return;
    }
    if (pixels)
        m_CopyPending = false; // a new copy is on its way
    else
        fetchPixelCopy();
    glBindTexture(GL_TEXTURE_2D, m_Texture);
    const long pixelStride = stride / static_cast<long>(PixelDepth::BytesPerChannel(depth)) / 4;
    glPixelStorei(GL_UNPACK_ROW_LENGTH, static_cast<GLint>(pixelStride));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_SWIZZLE_RGBA, argbOrder ? s_StoredOrder : s_AlphaFirst);

    const void* source = pixels;
    if (pixels && depth == 16 && expand16) {
        expandPixels(pixels, width, height, stride);
        source = m_PixelCopy.data();
    }
    glTexImage2D(GL_TEXTURE_2D, 0, InternalFormat(depth), static_cast<GLsizei>(width),
                 static_cast<GLsizei>(height), 0, GL_RGBA, getGLType(depth), source);
    if (pixels && source == pixels) {
        m_CopyPending = canCopyLater(width, height, depth, stride);
        if (!m_CopyPending)
            copyPixels(pixels, height, stride);
    }

    m_Width = width;
    m_Height = height;
    m_Depth = depth;
    m_Stride = stride;
    m_ArgbOrder = argbOrder;
}

const std::vector<unsigned char>& Texture::pixelCopy() const {
    fetchPixelCopy();
    return m_PixelCopy;
}

// GL must have taken exactly the rows given, at a precision that gives them back unchanged.
bool Texture::canCopyLater(unsigned width, unsigned height, unsigned depth, long stride) const {
    const bool exactDepth = depth == 8 || PixelDepth::ForSizes(depth) == 16 || depth == 32;
    const long pixelBytes = 4 * static_cast<long>(PixelDepth::BytesPerChannel(depth));
    return !m_CopyAtOnce && m_Texture && exactDepth && width <= s_SafeExtent && height <= s_SafeExtent &&
           stride % pixelBytes == 0 && stride / pixelBytes >= static_cast<long>(width);
}

void Texture::fetchPixelCopy() const {
    if (!m_CopyPending)
        return;
    m_CopyPending = false;
    m_CopyAtOnce = true;
    m_PixelCopy.resize(std::size_t(m_Height) * static_cast<std::size_t>(m_Stride));
    const PackScope scope(static_cast<GLint>(m_Stride / PixelDepth::BytesPerChannel(m_Depth) / 4));
    glBindTexture(GL_TEXTURE_2D, m_Texture);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, getGLType(m_Depth), m_PixelCopy.data());
}

void Texture::copyPixels(const void* pixels, unsigned height, long stride) {
    const auto* first = static_cast<const unsigned char*>(pixels);
    m_PixelCopy.assign(first, first + std::size_t(height) * static_cast<std::size_t>(std::max(stride, 0L)));
}

void Texture::expandPixels(const void* pixels, unsigned width, unsigned height, long stride) {
    const std::size_t rowBytes = static_cast<std::size_t>(std::max(stride, 0L));
    m_PixelCopy.resize(height * rowBytes);
    const std::size_t count = std::min(std::size_t(width) * 4, rowBytes / sizeof(std::uint16_t));
    for (std::size_t y = 0; y < height; ++y)
        ExpandRow(
            reinterpret_cast<const std::uint16_t*>(static_cast<const unsigned char*>(pixels) + y * rowBytes),
            reinterpret_cast<std::uint16_t*>(m_PixelCopy.data() + y * rowBytes), count);
}

void Texture::grabSurface(const Surface& surface, bool flip) {
    const unsigned char* pixels = surface.pixels();
    const std::size_t stride = surface.stride();
    std::vector<unsigned char> reversed;
    if (flip && pixels) {
        reversed.resize(surface.height() * stride);
        for (std::size_t row = 0; row < surface.height(); ++row)
            std::memcpy(&reversed[(surface.height() - 1 - row) * stride], pixels + row * stride, stride);
        pixels = reversed.data();
    }
    grabPixels(pixels, surface.width(), surface.height(), surface.depth(), static_cast<long>(stride), true,
               false);
}

bool Texture::load(const std::string& path) {
    const std::vector<unsigned char> file = Utils::ReadWholeFile(Utils::ToWide(path));
    if (file.empty())
        return false;
    m_FileName = path;
    const DecodedImage image = DecodeImage(file);
    if (!image.pixels)
        return false;
    if (init(image.width, image.height, image.depth, true))
        grabPixels(image.pixels.get(), image.width, image.height, image.depth,
                   static_cast<long>(PixelDepth::RowBytes(image.width, image.depth)), false, false);
    return true;
}

void Texture::setParameter(unsigned pname, unsigned value) {
    glBindTexture(GL_TEXTURE_2D, m_Texture);
    glTexParameteri(GL_TEXTURE_2D, pname, static_cast<GLint>(value));
}

unsigned Texture::getGLType(unsigned depth) {
    switch (PixelDepth::ForSizes(depth)) {
    case 16:
        return GL_UNSIGNED_SHORT;
    case 32:
        return GL_FLOAT;
    default:
        return GL_UNSIGNED_BYTE;
    }
}
