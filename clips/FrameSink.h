#pragma once

#include <cstddef>
#include <string>

#include "clips/FrameList.h"
#include "pictures/Picture.h"

namespace fxhost {

// Writes the frames of a clip.
class FrameSink {
public:
    virtual ~FrameSink() = default;

    // True when an earlier run already wrote this frame completely, so that it need not be rendered.
    virtual bool isWritten(const FrameId&) const { return false; }
    // Writes one frame. Unless isParallel, one thread passes the frames in ascending order. Throws
    // EffectFailure that names the file.
    virtual void write(const FrameId& frame, const Picture& picture) = 0;
    // True when many threads may call write() at the same time, in any order.
    virtual bool isParallel() const { return false; }
    // Completes the output after the last frame. `frames` is the length of the whole clip. Throws
    // EffectFailure.
    virtual void finish(std::size_t frames) { static_cast<void>(frames); }
    // Called instead of finish() when the run ends early. Keeps what a later run can continue from. Does not
    // throw.
    virtual void keepPartialOutput() {}

    // How many of the clip's first `written` frames survive if the process dies now.
    virtual std::size_t durableFrames(std::size_t written) const { return written; }
    // Folder that holds the finished parts of an incomplete clip; empty when frames go straight to their
    // final place.
    virtual std::string partsFolder() const { return {}; }
    // True when a later run with --resume can continue after the durable frames.
    virtual bool isResumable() const { return false; }
};

} // namespace fxhost
