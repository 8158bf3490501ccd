#pragma once

#include <cstdint>
#include <vector>

#include "platform/CGL.h"

// The baseline: a program that only uploads, draws one rectangle and reads back. It has its own GL context
// and creates its GL objects once. It expands 16-bit pixels to GL's range before the upload, as the engine
// must.
class BareFrame {
public:
    // depth: bits per channel. The own context is current afterwards.
    BareFrame(unsigned width, unsigned height, unsigned depth);
    ~BareFrame();
    BareFrame(const BareFrame&) = delete;
    BareFrame& operator=(const BareFrame&) = delete;

    // Renders one frame of pixels in rows without padding. No context is current afterwards.
    void Render(const void* pixels);

    // Durations of the last frame's stages in seconds. Each stage ends with glFinish when `staged` is true.
    struct Stages {
        double upload = 0, draw = 0, readBack = 0;
    };
    bool staged = false;
    Stages last;

private:
    void Upload(const void* pixels);
    void Draw();
    void ReadBack();

    unsigned m_Width, m_Height, m_Depth;
    CGLContextObj m_Context = nullptr;
    unsigned m_Texture = 0, m_Target = 0, m_Framebuffer = 0, m_Program = 0, m_PackBuffer = 0;
    std::vector<std::uint16_t> m_Expanded;
};
