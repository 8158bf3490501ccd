#pragma once

#include <string>

#include "clips/FrameList.h"
#include "pictures/Picture.h"

namespace fxhost {

// Where a clip's frames go.
class FrameSink {
public:
    virtual ~FrameSink() = default;

    // Whether the frame lies there whole from an earlier run, so that it need not be rendered.
    virtual bool has(const FrameId&) const { return false; }
    // Takes one frame. Sinks that are not parallel get them in order, from one thread. Throws EffectFailure
    // naming the file.
    virtual void write(const FrameId& frame, const Picture& picture) = 0;
    virtual bool isParallel() const { return false; }
    // After the last frame: makes the result of that many frames whole. Throws EffectFailure.
    virtual void finish(std::size_t) {}
    // Instead of finish, when the run ends early: keeps what a later run can go on from. Does not throw.
    virtual void keep() {}

    // How many of the clip's first `written` frames are safe should the process die now.
    virtual std::size_t safe(std::size_t written) const { return written; }
    // Where those are until the clip is whole, when that is not where the user expects them.
    virtual std::string keptIn() const { return {}; }
    // Whether a later run can go on after those.
    virtual bool isResumable() const { return false; }
};

} // namespace fxhost
