#pragma once

#include <cstdint>
#include <vector>

#include "platform/CGL.h"

// The baseline: a program that only uploads, draws one rectangle and reads back, in a GL context of its own,
// with objects that are made once. 16-bit pixels are expanded to GL's range first, as the engine must.
class BareFrame {
public:
    // depth: bits per channel. Leaves its context current.
    BareFrame(unsigned width, unsigned height, unsigned depth);
    ~BareFrame();
    BareFrame(const BareFrame&) = delete;
    BareFrame& operator=(const BareFrame&) = delete;

    // One frame of tightly packed pixels. Makes its context current and, at the end, none.
    void Render(const void* pixels);

    // Seconds of the last frame's stages, each closed by glFinish when `staged` is set.
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
