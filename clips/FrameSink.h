#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "clips/FramePlan.h"
#include "pictures/Picture.h"

namespace fxhost {

// Writes the frames of a clip.
class FrameSink {
public:
    virtual ~FrameSink() = default;

    // What an earlier run left of a frame.
    enum class Earlier {
        Nothing,
        Complete, // the same frame; it is not rendered again
        Outdated, // an incomplete file, or a frame that was made from something else
    };

    // Called once, before the other functions, with all frames of the run and their digests. Throws WrongUse
    // or EffectFailure.
    virtual void start(const FramePlan& plan) { static_cast<void>(plan); }
    // After start().
    virtual Earlier earlier(const FrameId&) const { return Earlier::Nothing; }
    // Writes one frame. Unless isParallel, one thread passes the frames in ascending order. Throws
    // EffectFailure that names the file.
    virtual void write(const FrameId& frame, const Picture& picture) = 0;
    // Takes a frame in which the effect reported an error, in place of write(). The frame must not count as
    // written.
    virtual void writeFailed(const FrameId& frame, const Picture& picture) { write(frame, picture); }
    // True when many threads may call write() at the same time, in any order.
    virtual bool isParallel() const { return false; }
    // Completes the output after the last frame. `frames` is the length of the whole clip. Throws
    // EffectFailure.
    virtual void finish(std::size_t frames) { static_cast<void>(frames); }
    // Called instead of finish() when the run ends early. Keeps what a later run can continue from. Does not
    // throw.
    virtual void keepPartialOutput() {}

    // Writes the frame to a temporary file, removes it and returns its bytes. For a dry run, in place of
    // start() and write(). Throws like write().
    virtual std::uint64_t tryOut(const Picture& picture) const {
        static_cast<void>(picture);
        return 0;
    }
    // The file that has the frame: its picture or the video; empty when there is none.
    virtual std::string file(const FrameId&) const { return {}; }

    // How many of the clip's first `written` frames survive if the process dies now.
    virtual std::size_t durableFrames(std::size_t written) const { return written; }
    // Folder that holds the finished parts of an incomplete clip; empty when frames go straight to their
    // final place.
    virtual std::string partsFolder() const { return {}; }
    // True when a later run with --resume can continue after the durable frames.
    virtual bool isResumable() const { return false; }
};

} // namespace fxhost
