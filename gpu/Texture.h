#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class Surface;

// One GL texture of four channels. Pixels reach shaders in the stored order alpha, red, green, blue; the
// first row uploaded lies at t = 0.
//
// Owns its GL name: release() and the destructor delete it. Everything but the plain getters needs the
// engine's GL context current. Depths are bits per channel: 8, 16 or 32 (float); 15 counts as 16.
class Texture {
public:
    // Handles of textures carry this type tag.
    static constexpr std::uint32_t Tag = 0x04000000u;
    class Factory; // the registry defines it

    Texture() = default;
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;
    virtual ~Texture();

    // Makes the GL texture without content, replacing what was there. Always true.
    virtual bool init(unsigned width, unsigned height, unsigned depth, bool argbOrder);
    virtual void release();

    // Replaces size and content, and resets filters to linear and wrapping to repeat.
    // pixels: height rows, stride bytes apart (any distance, negative too), each at least width * 4 channels;
    // null makes an empty texture and leaves the pixel copy as it was. argbOrder: the rows hold alpha, red,
    // green, blue; otherwise red, green, blue, alpha. expand16: 16-bit channels run from 0 to 32768 and are
    // brought to 0..65534.
    void grabPixels(const void* pixels, unsigned width, unsigned height, unsigned depth, long stride,
                    bool argbOrder, bool expand16);
    // Uploads a surface, with flip its last row first.
    void grabSurface(const Surface& surface, bool flip);

    // Decodes an image file of the effect (what stb_image reads: PNG, JPEG, GIF, Radiance HDR and more).
    // UTF-8 path. False, and nothing changed but the file name, when it is missing or cannot be decoded.
    bool load(const std::string& path);

    // glTexParameteri; the next upload resets filters and wrapping.
    void setParameter(unsigned pname, unsigned value);

    unsigned id() const { return m_Texture; } // GL name; 0 when there is none
    unsigned width() const { return m_Width; }
    unsigned height() const { return m_Height; }
    unsigned depth() const { return m_Depth; }       // as given, so 15 stays 15
    std::int64_t stride() const { return m_Stride; } // bytes per row of the last upload; 0 after init
    bool argbOrder() const { return m_ArgbOrder; }
    const std::string& fileName() const { return m_FileName; }
    // The last pixels uploaded, stride() bytes a row; expanded ones as they were expanded. Needs the GL
    // context: most uploads are copied only when somebody asks, from the GL texture.
    const std::vector<unsigned char>& pixelCopy() const;

    // The GL type of one channel in memory.
    static unsigned getGLType(unsigned depth);

    static Texture invalid; // what failed look-ups return; its GL name is 0

protected:
    // For textures that are also drawn into, whose GL content does not stay what was uploaded.
    void copyEveryUpload() { m_CopyAtOnce = true; }

private:
    bool canCopyLater(unsigned width, unsigned height, unsigned depth, long stride) const;
    void copyPixels(const void* pixels, unsigned height, long stride);
    void expandPixels(const void* pixels, unsigned width, unsigned height, long stride);
    void fetchPixelCopy() const;

    std::string m_FileName;
    unsigned m_Texture = 0;
    unsigned m_Width = 0;
    unsigned m_Height = 0;
    unsigned m_Depth = 0;
    std::int64_t m_Stride = 0;
    bool m_ArgbOrder = false;
    mutable std::vector<unsigned char> m_PixelCopy;
    mutable bool m_CopyPending = false; // the copy is still to be fetched from GL
    mutable bool m_CopyAtOnce = false;  // somebody reads the copies, so do not leave them to GL
};
