#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "clips/ClipOptions.h"
#include "clips/FrameSink.h"
#include "clips/FrameSource.h"
#include "clips/Keys.h"
#include "clips/NumberPattern.h"
#include "clips/Pipeline.h"
#include "clips/VideoProbe.h"
#include "toolkit/FrameRenderer.h"

namespace fxhost {

// The rest of what a clip needs to know.
struct ClipRequest {
    std::string input;                 // file, pattern, "-", or empty for an empty layer
    unsigned width = 0, height = 0;    // of the empty layer, in pixels
    std::string output;                // pattern, video, "-", or /dev/null
    std::optional<unsigned> depth;     // bits per channel
    double time = 0;                   // added to every frame's time, in seconds
    std::vector<std::string> identity; // other texts that decide what frames look like
};

// Many frames on their way from files through an effect to files.
class Clip {
public:
    // Opens the input and checks everything that can be checked before an effect runs. Throws WrongUse that
    // names the file or option.
    Clip(const ClipOptions& options, const ClipRequest& request);

    unsigned depth() const { return m_Source->depth(); } // bits per channel of all frames
    const FrameRate& rate() const { return m_Rate; }
    // Seconds.
    double timeOf(long number) const;

    // Renders the frames and gives the exit status. `renderer` stays on this thread; afterFrame is called
    // here after each frame. Throws WrongUse or EffectFailure when something fails; the text says how many
    // frames are written and how to go on.
    int run(FrameRenderer& renderer, const Animation& animation, const std::vector<LayerInput>& layers,
            const std::function<void()>& afterFrame);

private:
    void openInput();
    void openPictures(const NumberPattern& pattern);
    void openVideo();
    void openRaw();
    void openStill();
    void checkCombination() const;
    void listFrames(std::optional<FrameRange> all);
    void openOutput();
    std::unique_ptr<FrameSink> videoSink() const;
    std::string howToGoOn(std::size_t done) const;

    const ClipOptions m_Options;
    const ClipRequest m_Request;
    std::optional<FrameRange> m_Range; // as asked for
    FrameRate m_Rate;
    long m_ZeroFrame = 1;
    std::optional<VideoInfo> m_Video; // of the input
    std::unique_ptr<FrameSource> m_Source;
    std::unique_ptr<FrameSink> m_Sink;
    FramePlan m_Plan;
};

// The values of --param and --keys; --param wins.
Animation ReadAnimation(const ClipOptions& options, const std::vector<std::string>& settings,
                        const std::vector<Parameter>& parameters, const FrameRate& rate);

} // namespace fxhost
