#pragma once

#include <optional>
#include <string>

#include "clips/FrameList.h"
#include "clips/FrameRate.h"
#include "pictures/Picture.h"

namespace fxhost {

// Reads the frames of a clip. All pictures have the size and depth of the first one.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    // Reads one frame. Returns nothing when the clip ends before it, provided that it may end there. Unless
    // isParallel, one thread asks for ascending numbers. Throws WrongUse or EffectFailure that names the file
    // and the frame.
    virtual std::optional<Picture> read(long number) = 0;
    // The file that a frame is read from; empty when there is none. A video is the file of all its frames.
    virtual std::string file(long number) const = 0;
    // True when many threads may call read() at the same time, in any order.
    virtual bool isParallel() const = 0;

    unsigned width() const { return m_Width; }   // pixels
    unsigned height() const { return m_Height; } // pixels
    unsigned depth() const { return m_Depth; }   // bits per channel: 8, 16 or 32
    bool hasAlpha() const { return m_HasAlpha; } // false when every pixel is opaque

    // The frame rate that the pictures state; nothing when there is none. Videos have more, see VideoInfo.
    const std::optional<FrameRate>& rate() const { return m_Rate; }

protected:
    std::optional<FrameRate> m_Rate;
    unsigned m_Width = 0, m_Height = 0, m_Depth = 8;
    bool m_HasAlpha = true;
};

} // namespace fxhost
