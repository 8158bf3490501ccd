#pragma once

#include <cstdint>

#include "gpu/Texture.h"
#include "gpu/Vector4.h"

// A texture with a framebuffer that draws into it. Pixels are alpha, red, green, blue; row 0 is the bottom
// row for OpenGL. Owns both GL names. All functions but the plain getters need the engine's GL context to be
// current.
class RenderTarget : public Texture {
public:
    // Handles of render targets carry this type tag.
    static constexpr std::uint32_t Tag = 0x03000000u;
    class Factory; // the registry defines it

    RenderTarget() { copyEveryUpload(); }
    ~RenderTarget() override;

    using Texture::init;
    // Makes texture and framebuffer, cleared to 0, which replace earlier ones. Framebuffer 0 is bound
    // afterwards. depth: bits per channel. False, with no GL names and an error text, when OpenGL cannot
    // store the size or cannot draw into such a texture.
    virtual bool init(unsigned width, unsigned height, unsigned depth);
    void release() override;

    // Binds the framebuffer for drawing. The viewport becomes `rect` (in pixels, truncated) when its width
    // and height are both greater than 0, otherwise the whole target. Nothing is cleared.
    void set(const Vector4* rect);

    // Reads the whole target into a pack buffer and maps it into memory until grabEnd. The mapped memory has
    // height() rows of PixelDepth::RowBytes(width(), depth()) bytes without padding, bottom row first.
    // Returns null, with an error text and no buffer bound or mapped, when the target is not usable or OpenGL
    // has no memory.
    const void* grabBegin();
    // Ends the mapping. Does nothing when there is none.
    void grabEnd(void* pointer);

    // Copies to another target, scaled to its size. flip: vertically mirrored. linear: linear filter instead
    // of nearest. Does nothing when one of the two is not usable.
    void blit(RenderTarget& destination, bool flip, bool linear);

    unsigned framebuffer() const { return m_Framebuffer; } // GL name; 0 when there is none
    // True when the target can be drawn into and read.
    bool usable() const { return m_Framebuffer != 0 && hasStorage(); }

    static RenderTarget invalid;  // returned by failed look-ups
    static RenderTarget screen;   // the default framebuffer: its GL name is 0
    static unsigned m_CurrentFBO; // the framebuffer that set or grabBegin bound last

private:
    // Attaches the texture to the framebuffer and clears it. False when OpenGL cannot draw into it.
    bool attachAndClear();
    void bind(int x, int y, int width, int height);

    unsigned m_Framebuffer = 0;
    bool m_IsMapped = false;
};
