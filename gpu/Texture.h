#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class Surface;

// One GL texture of four channels. Shaders read the channels in the order alpha, red, green, blue. The first
// row uploaded is at t = 0.
//
// Owns its GL name, which release() and the destructor delete. All functions but the plain getters need the
// engine's GL context to be current. Depths are bits per channel; see PixelDepth.h. Width and height are from
// 1 to GLLimits::MaxTextureSize(); a texture of another size, or one that OpenGL has no memory for, has no
// pixels and an error text.
class Texture {
public:
    // Handles of textures carry this type tag.
    static constexpr std::uint32_t Tag = 0x04000000u;
    class Factory; // the registry defines it

    Texture() = default;
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;
    virtual ~Texture();

    // Makes a GL texture with undefined content, which replaces an earlier one. False, with no GL name and an
    // error text, when OpenGL cannot store the size.
    virtual bool init(unsigned width, unsigned height, unsigned depth, bool argbOrder);
    // Deletes the GL texture. The pixel copy is kept.
    virtual void release();
    // Deletes the GL objects and the pixel copy. The object stays as it was before its first init, which can
    // be called again.
    void freeStorage();

    // Replaces size and content, and resets filters to linear and wrapping to repeat. Does nothing without a
    // GL name. When OpenGL cannot store the size, the texture keeps its name, becomes 0 x 0 pixels and gets
    // an error text. pixels: `height` rows, `stride` bytes apart, which may be negative. Null makes the
    // content undefined and leaves the pixel copy as it was. argbOrder: pixels are alpha, red, green, blue;
    // otherwise red, green, blue, alpha. expand16: 16-bit channels range from 0 to 32768 and are expanded to
    // 0..65534.
    void grabPixels(const void* pixels, unsigned width, unsigned height, unsigned depth,
                    std::ptrdiff_t stride, bool argbOrder, bool expand16);
    // Uploads a surface; with flip, its last row becomes the first.
    void grabSurface(const Surface& surface, bool flip);

    // Decodes an image file of the effect (PNG, JPEG, GIF, Radiance HDR and the other formats of stb_image)
    // and uploads it. The path is UTF-8. False, with an error text, when the file is missing, cannot be
    // decoded or is larger than OpenGL can store; in the first two cases size and content stay as they were.
    bool load(const std::string& path);

    // Calls glTexParameteri; the next upload resets filters and wrapping. Names and values that OpenGL does
    // not know are ignored.
    void setParameter(unsigned pname, unsigned value);

    unsigned id() const { return m_Texture; } // GL name; 0 when there is none
    unsigned width() const { return m_Width; }
    unsigned height() const { return m_Height; }
    unsigned depth() const { return m_Depth; }       // as given, so 15 stays 15
    std::int64_t stride() const { return m_Stride; } // bytes per row of the last upload; 0 after init
    bool argbOrder() const { return m_ArgbOrder; }
    bool hasStorage() const { return m_Texture != 0 && m_Width != 0 && m_Height != 0; }
    const std::string& fileName() const { return m_FileName; }
    // Why the last init, upload, load or read-back failed; empty when it succeeded.
    const std::string& errorText() const { return m_ErrorText; }
    // The pixels of the last upload, stride() bytes a row; expanded if they were expanded. Needs the GL
    // context, because most uploads are copied from the GL texture when the copy is first asked for.
    const std::vector<unsigned char>& pixelCopy() const;

    // The GL type of one channel in memory.
    static unsigned getGLType(unsigned depth);

    static Texture invalid; // returned by failed look-ups; its GL name is 0

protected:
    // For textures that are also drawn into, so that their GL content does not stay what was uploaded.
    void copyEveryUpload() { m_CopyAtOnce = true; }
    // Sets the error text; an empty one means success.
    void fail(const std::string& text) { m_ErrorText = text; }

private:
    bool canCopyLater(unsigned width, unsigned depth, std::ptrdiff_t stride) const;
    void copyPixels(const void* pixels, unsigned height, std::ptrdiff_t stride);
    void expandPixels(const void* pixels, unsigned width, unsigned height, std::ptrdiff_t stride);
    void fetchPixelCopy() const;
    void upload(const void* pixels, unsigned width, unsigned height, unsigned depth, std::ptrdiff_t stride,
                bool argbOrder, bool expand16);
    bool allocate(const void* pixels, unsigned width, unsigned height, unsigned depth);
    void setSampling(bool argbOrder);
    void dropPixels();

    std::string m_FileName;
    std::string m_ErrorText;
    unsigned m_Texture = 0;
    unsigned m_Width = 0;
    unsigned m_Height = 0;
    unsigned m_Depth = 0;
    std::int64_t m_Stride = 0;
    bool m_ArgbOrder = false;
    mutable std::vector<unsigned char> m_PixelCopy;
    mutable bool m_CopyPending = false; // the copy is still to be fetched from GL
    mutable bool m_CopyAtOnce = false;  // copies are made at every upload
};
