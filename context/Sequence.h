#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "parameters/Parameter.h"

class Context;
class RenderTarget;

// The engine's state of one effect instance: its copies of all parameters, the render target of its frames,
// the texture of its input layer, and the time, extent and origin of the current frame.
// Threads: a sequence takes no locks and is used only inside the engine's frame lock.
class Sequence final : public ParametersHolder {
public:
    // Host pixels: four channels in the order alpha, red, green, blue, rows stored top-down.
    struct Surface {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        std::int64_t rowBytes = 0;         // row stride in bytes
        std::uint32_t format = 0;          // bits per channel: 8, 16 or 32
        const void* pixels = nullptr;      // not owned
        std::vector<unsigned char> buffer; // when not empty, used instead of `pixels`
    };

    // The registry must outlive its sequences.
    explicit Sequence(Context& owner) : m_Owner(&owner) {}

    // Replaces the own parameters and their values with copies of the registry's master parameters.
    void Init();

    // Prepares the render target for a frame of the surface's size and format. The time is in seconds.
    void Reset(const Surface& surface, double time);

    // Brings the render target back to the size and depth of the frame when the script has changed them. Its
    // picture is scaled. Does nothing when the script has released the target.
    void RestoreTarget();
    // True when the render target has the size and depth of the last Reset and can be read.
    bool HasFrame() const;

    // Frees the GL storage of render target and input texture. Their handles stay registered, and the next
    // Reset and ResetInputTexture create new ones. Needs the engine's GL context.
    void FreeStorage();

    // Value and flags of one parameter, with what identifies it in another run of the script.
    struct ParameterState {
        std::size_t nameHash;
        Parameter::Type type;
        std::uint32_t handle;
        std::uint32_t flags;
        Parameter::Value value;
    };
    // Returns the parameters that differ from the registry's masters in value or flags.
    std::vector<ParameterState> OwnState() const;
    // Takes over values and flags for each parameter that has the same handle, name and type. Textures are
    // left alone, as their handles and GL names mean nothing in another run of the script.
    void Adopt(std::span<const ParameterState> state);

    // Uploads the input layer. Does nothing when the surface has no pixels.
    void ResetInputTexture(const Surface& surface);

    // Returns RenderTarget::invalid before the first Reset.
    RenderTarget& GetRenderTarget() const;

    // Sets render target, input texture and time to none and 0. The registry keeps the entities.
    void ClearFrame();

    unsigned int RenderTargetHandle() const { return m_RenderTarget; }
    unsigned int InputTextureHandle() const { return m_InputTexture; }
    double Time() const { return m_Time; }

    // Extent of the frame in pixels. A width or height of 0 selects that of the input layer.
    void SetOutputExtent(unsigned int width, unsigned int height);
    unsigned int OutputWidth() const { return m_OutputWidth; }
    unsigned int OutputHeight() const { return m_OutputHeight; }

    // Position of the input layer inside the output in pixels, as the host reports it.
    void SetInputOrigin(int x, int y);
    int InputOriginX() const { return m_InputOriginX; }
    int InputOriginY() const { return m_InputOriginY; }

private:
    Context* m_Owner;
    unsigned int m_RenderTarget = 0;
    unsigned int m_InputTexture = 0;
    double m_Time = 0.0;
    std::uint32_t m_FrameWidth = 0; // of the last Reset
    std::uint32_t m_FrameHeight = 0;
    std::uint32_t m_FrameFormat = 0;
    std::uint32_t m_OutputWidth = 0;
    std::uint32_t m_OutputHeight = 0;
    std::int32_t m_InputOriginX = 0;
    std::int32_t m_InputOriginY = 0;
};
