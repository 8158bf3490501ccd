#pragma once

#include <cstdint>

#include "gpu/Texture.h"
#include "gpu/Vector4.h"

// A texture with a framebuffer that draws into it. Holds alpha, red, green, blue; row 0 is the bottom one
// for GL. Owns both GL names; needs the engine's GL context current.
class RenderTarget : public Texture {
public:
    // Handles of render targets carry this type tag.
    static constexpr std::uint32_t Tag = 0x03000000u;
    class Factory; // the registry defines it

    RenderTarget() { copyEveryUpload(); }
    ~RenderTarget() override;

    using Texture::init;
    // Makes texture and framebuffer, cleared to 0, replacing what was there; framebuffer 0 is bound
    // afterwards. depth: bits per channel. False when GL hands out no names.
    virtual bool init(unsigned width, unsigned height, unsigned depth);
    void release() override;

    // Binds the framebuffer for drawing. The viewport becomes rect (pixels, truncated) when its width and
    // height are both greater than 0, else the whole target. Nothing is cleared.
    void set(const Vector4* rect);

    // Reads the whole target into a pack buffer and maps it: tightly packed rows, bottom row first, four
    // channels of the target's depth. Valid until grabEnd; null when GL cannot map it.
    const void* grabBegin();
    void grabEnd(void* pointer);

    // Copies to another target, scaled to its size; flip mirrors vertically, linear filters.
    void blit(RenderTarget& destination, bool flip, bool linear);

    unsigned framebuffer() const { return m_Framebuffer; } // GL name; 0 when there is none
    bool usable() const { return m_Framebuffer != 0 && id() != 0; }

    static RenderTarget invalid;  // what failed look-ups return
    static RenderTarget screen;   // stands for the default framebuffer: its name is 0
    static unsigned m_CurrentFBO; // the framebuffer that set or grabBegin bound last

private:
    void bind(int x, int y, int width, int height);

    unsigned m_Framebuffer = 0;
};
