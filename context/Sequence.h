#pragma once

#include <cstdint>
#include <vector>

#include "parameters/Parameter.h"

class Context;
class RenderTarget;

// One effect instance inside the engine: its copies of all parameters, the render target of its frames, the
// texture of its input layer, and the time, extent and origin of the frame at work.
class Sequence final : public ParametersHolder {
public:
    // Host pixels handed to a sequence: four channels, first row on top.
    struct Surface {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        std::int64_t rowBytes = 0;         // from one row to the next
        std::uint32_t format = 0;          // bits per channel: 8, 16 or 32
        const void* pixels = nullptr;      // not owned
        std::vector<unsigned char> buffer; // when not empty, used instead of `pixels`
    };

    // The registry outlives its sequences.
    explicit Sequence(Context& owner) : m_Owner(&owner) {}

    // Takes fresh copies of the registry's parameters, discarding all own values.
    void Init();

    // Prepares the render target for a frame of the surface's size and format. Time in seconds.
    void Reset(const Surface& surface, double time);

    // Uploads the input layer; nothing when the surface has no pixels.
    void ResetInputTexture(const Surface& surface);

    // RenderTarget::invalid before the first Reset.
    RenderTarget& GetRenderTarget() const;

    // Forgets render target, input texture and time; the entities stay with the registry.
    void ClearFrame();

    unsigned int RenderTargetHandle() const { return m_RenderTarget; }
    unsigned int InputTextureHandle() const { return m_InputTexture; }
    double Time() const { return m_Time; }

    // The frame's extent in pixels; 0 lets the engine take the input's.
    void SetOutputExtent(unsigned int width, unsigned int height);
    unsigned int OutputWidth() const { return m_OutputWidth; }
    unsigned int OutputHeight() const { return m_OutputHeight; }

    // Origin of the input layer in pixels, as the host reports it.
    void SetInputOrigin(int x, int y);
    int InputOriginX() const { return m_InputOriginX; }
    int InputOriginY() const { return m_InputOriginY; }

private:
    Context* m_Owner;
    unsigned int m_RenderTarget = 0;
    unsigned int m_InputTexture = 0;
    double m_Time = 0.0;
    std::uint32_t m_OutputWidth = 0;
    std::uint32_t m_OutputHeight = 0;
    std::int32_t m_InputOriginX = 0;
    std::int32_t m_InputOriginY = 0;
};
