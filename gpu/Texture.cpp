#include "gpu/Texture.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "gpu/ChannelOrder.h"
#include "gpu/GLErrors.h"
#include "gpu/GLLimits.h"
#include "gpu/ImageDecoder.h"
#include "gpu/PixelDepth.h"
#include "gpu/Surface.h"
#include "platform/GL.h"
#include "utils/Utils.h"

Texture Texture::invalid;

namespace {

constexpr GLint s_StoredOrder[] = {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA};
// For pixels of red, green, blue, alpha, so that shaders read alpha first as in every other texture.
constexpr GLint s_AlphaFirst[] = {GL_ALPHA, GL_RED, GL_GREEN, GL_BLUE};

// Sets the row length of the next read into memory, in pixels, and restores the caller's bindings afterwards.
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

// Expands 0..32768 to 0..65534: a value v becomes 2v, above the middle 2(v - 1).
void ExpandRow(const std::uint16_t* __restrict from, std::uint16_t* __restrict to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<std::uint16_t>(2 * (from[i] - (from[i] > 16384)));
}

// OpenGL knows distances between rows of whole pixels only, and reads every row to its end.
bool IsRowLength(std::ptrdiff_t stride, unsigned width, unsigned depth) {
    const auto pixelBytes = static_cast<std::ptrdiff_t>(PixelDepth::BytesPerPixel(depth));
    return stride >= 0 && stride % pixelBytes == 0 && static_cast<std::size_t>(stride / pixelBytes) >= width;
}

// Copies rows of any stride, which may be negative, to rows without padding.
std::vector<unsigned char> PackRows(const void* pixels, std::size_t rowBytes, unsigned height,
                                    std::ptrdiff_t stride) {
    std::vector<unsigned char> packed(rowBytes * height);
    const std::size_t available = std::min(rowBytes, static_cast<std::size_t>(std::abs(stride)));
    for (std::ptrdiff_t y = 0; y < static_cast<std::ptrdiff_t>(height); ++y)
        std::memcpy(packed.data() + static_cast<std::size_t>(y) * rowBytes,
                    static_cast<const unsigned char*>(pixels) + y * stride, available);
    return packed;
}

bool IsSize(unsigned width, unsigned height) {
    const unsigned limit = GLLimits::MaxTextureSize();
    return width >= 1 && height >= 1 && width <= limit && height <= limit;
}

std::string SizeProblem(unsigned width, unsigned height) {
    // Scripts may pass negative numbers.
    const auto text = [](unsigned extent) { return std::to_string(static_cast<int>(extent)); };
    return "a texture of " + text(width) + " x " + text(height) +
           " pixels is not possible; OpenGL can store 1 to " + std::to_string(GLLimits::MaxTextureSize()) +
           " pixels in each direction";
}

std::string StorageProblem(unsigned width, unsigned height, unsigned depth) {
    return "OpenGL cannot store a texture of " + std::to_string(width) + " x " + std::to_string(height) +
           " pixels of " + std::to_string(PixelDepth::Stored(depth)) +
           " bits per channel; it has no memory for it, or does not support this depth";
}

} // namespace

Texture::~Texture() {
    m_CopyPending = false; // nobody can ask for the copy any more
    Texture::release();
}

bool Texture::init(unsigned width, unsigned height, unsigned depth, bool argbOrder) {
    if (m_Texture)
        release();
    m_Width = m_Height = 0;
    m_Depth = depth;
    if (!IsSize(width, height)) {
        m_ErrorText = SizeProblem(width, height);
        return false;
    }
    glGenTextures(1, &m_Texture);
    if (!m_Texture)
        m_ErrorText = "OpenGL cannot create a texture";
    grabPixels(nullptr, width, height, depth, static_cast<std::ptrdiff_t>(PixelDepth::RowBytes(width, depth)),
               argbOrder, false);
    m_Stride = 0;
    if (!hasStorage())
        release();
    return m_Texture != 0;
}

void Texture::release() {
    fetchPixelCopy();
    if (m_Texture)
        glDeleteTextures(1, &m_Texture);
    m_Texture = 0;
    GLErrors::Check("Texture::release");
}

void Texture::freeStorage() {
    m_CopyPending = false;
    release();
    m_PixelCopy = std::vector<unsigned char>();
    m_Width = m_Height = 0;
    m_Stride = 0;
}

void Texture::grabPixels(const void* pixels, unsigned width, unsigned height, unsigned depth,
                         std::ptrdiff_t stride, bool argbOrder, bool expand16) {
    if (!m_Texture)
        return;
    if (!IsSize(width, height)) {
        dropPixels();
        m_ErrorText = SizeProblem(width, height);
    } else if (pixels && !IsRowLength(stride, width, depth)) {
        const std::size_t rowBytes = PixelDepth::RowBytes(width, depth);
        const auto packed = PackRows(pixels, rowBytes, height, stride);
        upload(packed.data(), width, height, depth, static_cast<std::ptrdiff_t>(rowBytes), argbOrder,
               expand16);
    } else {
        upload(pixels, width, height, depth, stride, argbOrder, expand16);
    }
    GLErrors::Check("Texture::grabPixels");
}

void Texture::upload(const void* pixels, unsigned width, unsigned height, unsigned depth,
                     std::ptrdiff_t stride, bool argbOrder, bool expand16) {
    if (pixels)
        m_CopyPending = false; // this upload replaces the copy
    else
        fetchPixelCopy();
    m_Depth = depth;
    m_ArgbOrder = argbOrder;
    glBindTexture(GL_TEXTURE_2D, m_Texture);
    setSampling(argbOrder);
    const std::ptrdiff_t pixelStride = stride / static_cast<std::ptrdiff_t>(PixelDepth::BytesPerPixel(depth));
    glPixelStorei(GL_UNPACK_ROW_LENGTH, static_cast<GLint>(pixelStride));

    const void* source = pixels;
    std::vector<unsigned char> reordered;
    if (pixels && depth == 16 && expand16) {
        expandPixels(pixels, width, height, stride);
        source = m_PixelCopy.data();
    } else if (pixels && !argbOrder && !GLLimits::HasTextureSwizzle()) {
        const auto* const first = static_cast<const unsigned char*>(pixels);
        reordered.assign(first, first + height * static_cast<std::size_t>(stride));
        PutAlphaFirst(reordered.data(), reordered.size() / PixelDepth::BytesPerPixel(depth),
                      PixelDepth::BytesPerChannel(depth));
        source = reordered.data();
    }
    if (!allocate(source, width, height, depth)) {
        dropPixels();
        m_ErrorText = StorageProblem(width, height, depth);
        return;
    }
    m_ErrorText.clear();
    m_Width = width;
    m_Height = height;
    m_Stride = stride;
    if (!pixels || source == m_PixelCopy.data())
        return;
    m_CopyPending = source == pixels && canCopyLater(width, depth, stride);
    if (!m_CopyPending)
        copyPixels(pixels, height, stride);
}

void Texture::setSampling(bool argbOrder) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    if (GLLimits::HasTextureSwizzle())
        glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_SWIZZLE_RGBA, argbOrder ? s_StoredOrder : s_AlphaFirst);
}

bool Texture::allocate(const void* pixels, unsigned width, unsigned height, unsigned depth) {
    GLErrors::Clear();
    glTexImage2D(GL_TEXTURE_2D, 0, InternalFormat(depth), static_cast<GLsizei>(width),
                 static_cast<GLsizei>(height), 0, GL_RGBA, getGLType(depth), pixels);
    return GLErrors::None();
}

// A texture of 0 x 0 pixels takes no memory and reads as black.
void Texture::dropPixels() {
    m_CopyPending = false;
    m_PixelCopy = std::vector<unsigned char>();
    m_Width = m_Height = 0;
    m_Stride = 0;
    glBindTexture(GL_TEXTURE_2D, m_Texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
}

const std::vector<unsigned char>& Texture::pixelCopy() const {
    fetchPixelCopy();
    return m_PixelCopy;
}

// OpenGL must store exactly the pixels given, at a precision that returns them unchanged.
bool Texture::canCopyLater(unsigned width, unsigned depth, std::ptrdiff_t stride) const {
    const bool isExact = depth == 8 || PixelDepth::Stored(depth) != 8;
    return !m_CopyAtOnce && isExact && IsRowLength(stride, width, depth);
}

void Texture::fetchPixelCopy() const {
    if (!m_CopyPending)
        return;
    m_PixelCopy.resize(m_Height * static_cast<std::size_t>(m_Stride));
    m_CopyPending = false;
    m_CopyAtOnce = true;
    const PackScope scope(
        static_cast<GLint>(m_Stride / static_cast<std::ptrdiff_t>(PixelDepth::BytesPerPixel(m_Depth))));
    glBindTexture(GL_TEXTURE_2D, m_Texture);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, getGLType(m_Depth), m_PixelCopy.data());
    GLErrors::Check("Texture::pixelCopy");
}

void Texture::copyPixels(const void* pixels, unsigned height, std::ptrdiff_t stride) {
    const auto* first = static_cast<const unsigned char*>(pixels);
    m_PixelCopy.assign(first, first + std::size_t(height) *
                                          static_cast<std::size_t>(std::max<std::ptrdiff_t>(stride, 0)));
}

void Texture::expandPixels(const void* pixels, unsigned width, unsigned height, std::ptrdiff_t stride) {
    const std::size_t rowBytes = static_cast<std::size_t>(std::max<std::ptrdiff_t>(stride, 0));
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
    grabPixels(pixels, surface.width(), surface.height(), surface.depth(),
               static_cast<std::ptrdiff_t>(stride), true, false);
}

bool Texture::load(const std::string& path) {
    const std::vector<unsigned char> file = Utils::ReadWholeFile(Utils::ToWide(path));
    if (file.empty()) {
        m_ErrorText = "the image file is missing or empty";
        return false;
    }
    m_FileName = path;
    const DecodedImage image = DecodeImage(file);
    if (!image.pixels) {
        m_ErrorText = "the image file cannot be decoded: " + image.errorText;
        return false;
    }
    if (!init(image.width, image.height, image.depth, true))
        return false;
    grabPixels(image.pixels.get(), image.width, image.height, image.depth,
               static_cast<std::ptrdiff_t>(PixelDepth::RowBytes(image.width, image.depth)), false, false);
    return hasStorage();
}

void Texture::setParameter(unsigned pname, unsigned value) {
    glBindTexture(GL_TEXTURE_2D, m_Texture);
    glTexParameteri(GL_TEXTURE_2D, pname, static_cast<GLint>(value));
    GLErrors::Ignore();
}

unsigned Texture::getGLType(unsigned depth) {
    switch (PixelDepth::Stored(depth)) {
    case 16:
        return GL_UNSIGNED_SHORT;
    case 32:
        return GL_FLOAT;
    default:
        return GL_UNSIGNED_BYTE;
    }
}
