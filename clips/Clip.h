#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "clips/Animation.h"
#include "clips/ClipInput.h"
#include "clips/ClipOptions.h"
#include "clips/FrameSink.h"
#include "clips/Pipeline.h"
#include "toolkit/FrameRenderer.h"

namespace fxhost {

// Renders the frames of a clip from files through an effect to files.
class Clip {
public:
    // Opens the input and the output, and checks everything that can be checked before an effect runs. Throws
    // WrongUse that names the file or option.
    Clip(const ClipOptions& options, const ClipRequest& request);

    unsigned width() const { return m_Input.source->width(); } // pixels of all input frames
    unsigned height() const { return m_Input.source->height(); }
    unsigned depth() const { return m_Input.source->depth(); } // bits per channel of all frames
    const FrameRate& rate() const { return m_Input.rate; }
    // Time of the frame with this number, in seconds.
    double timeOf(long number) const;

    // Renders the frames and returns the exit status. `renderer` is used on the calling thread only, and
    // hasFailed is called there after each frame; it returns true when the effect reported an error in that
    // frame, which then gets no file. Throws WrongUse or EffectFailure; the text says how many frames are
    // written and how to continue.
    int run(FrameRenderer& renderer, const Animation& animation, const std::vector<LayerInput>& layers,
            const std::function<bool()>& hasFailed);
    // Renders the first frame, tries whether the output can be encoded, written and stored, and prints what
    // run() would do. Leaves no files. Throws like run().
    int dryRun(FrameRenderer& renderer, const Animation& animation, const std::vector<LayerInput>& layers,
               const std::function<bool()>& hasFailed);

private:
    void startSink(const Animation& animation, const std::vector<LayerInput>& layers);
    Picture renderFirst(FrameRenderer& renderer, const Animation& animation,
                        const std::vector<LayerInput>& layers);
    void requireSpace(std::uint64_t bytes) const;
    void skipFinishedFrames();
    int report(const PipelineResult& result, const Progress& progress) const;
    PipelineResult renderAll(const RenderFunction& render, Progress& progress);
    std::string continuationHint(std::size_t done) const;

    const ClipOptions m_Options;
    const ClipRequest m_Request;
    ClipInput m_Input;
    std::unique_ptr<FrameSink> m_Sink;
};

} // namespace fxhost
