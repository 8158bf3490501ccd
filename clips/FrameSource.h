#pragma once

#include <memory>
#include <optional>
#include <string>

#include "clips/FrameList.h"
#include "pictures/Picture.h"

namespace fxhost {

// Where a clip's frames come from. All pictures have the size and depth of the first one.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    // One frame; nothing when the clip ends before it and may do so. Sources that are not parallel are asked
    // for ascending numbers, by one thread. Throws WrongUse or EffectFailure naming the file and the frame.
    virtual std::optional<Picture> read(long number) = 0;
    // Whether read may be called by many threads at once, in any order.
    virtual bool isParallel() const = 0;

    unsigned width() const { return m_Width; }   // pixels
    unsigned height() const { return m_Height; } // pixels
    unsigned depth() const { return m_Depth; }   // bits per channel: 8, 16 or 32
    bool hasAlpha() const { return m_HasAlpha; }

protected:
    unsigned m_Width = 0, m_Height = 0, m_Depth = 8;
    bool m_HasAlpha = true;
};

} // namespace fxhost
