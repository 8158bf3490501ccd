#include "clips/ClipInput.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

#include "clips/FrameTiming.h"
#include "clips/NumberPattern.h"
#include "clips/PictureSource.h"
#include "clips/RawFrames.h"
#include "clips/VideoSource.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

constexpr FrameRate s_DefaultRate{24, 1};

// Fills a ClipInput, with one function for each kind of input.
class InputOpener {
public:
    InputOpener(const ClipOptions& options, const ClipRequest& request)
        : m_Options(options), m_Request(request) {
        if (!options.frames.empty())
            m_Input.range = FrameRange::Parse(options.frames);
        m_Input.rate = options.fps.empty() ? s_DefaultRate : FrameRate::Parse(options.fps);
    }

    ClipInput open() {
        openByKind();
        if (m_Options.zeroFrame)
            m_Input.zeroFrame = *m_Options.zeroFrame;
        return std::move(m_Input);
    }

private:
    void openByKind() {
        const std::string& input = m_Request.input;
        if (input == "-")
            return openRaw();
        const bool exists = !input.empty() && std::filesystem::exists(input);
        const auto pattern = NumberPattern::Parse("--input", input);
        if (pattern && !exists)
            openPictures(*pattern);
        else if (IsVideoName(input))
            openVideo();
        else
            openStill();
    }

    void openPictures(const NumberPattern& pattern) {
        const auto numbers = pattern.numbersOnDisk();
        if (numbers.empty())
            throw WrongUse("--input " + pattern.text() + ": there is no such picture, neither " +
                           pattern.path(m_Input.range ? m_Input.range->first : 1) +
                           " nor one with another number");
        m_Input.zeroFrame = numbers.front();
        listFrames(FrameRange{numbers.front(), numbers.back(), 1});
        m_Input.source = OpenPictures(pattern, m_Input.range->first, m_Request.depth, m_Request.alphaIn);
    }

    void openVideo() {
        m_Input.video = ProbeVideo(m_Request.input);
        const VideoInfo& video = *m_Input.video;
        if (m_Options.fps.empty())
            m_Input.rate = video.rate;
        m_Input.firstFrameTime = video.start;
        const std::vector<long> frames = video.isVariable ? resample() : std::vector<long>();
        const long required = m_Input.range ? m_Input.range->last : 0;
        requireFirstFrame("a video");
        const long count = frames.empty() ? std::max({video.packets, video.declaredFrames, 1L})
                                          : static_cast<long>(frames.size());
        listFrames(FrameRange{1, count, 1});
        m_Input.source =
            OpenVideo(m_Request.input, video, m_Request.depth, required, frames, m_Request.alphaIn);
    }

    // A variable frame rate becomes a constant one, which is the rate of --fps when that is given.
    std::vector<long> resample() {
        VideoInfo& video = *m_Input.video;
        video.rate = m_Input.rate;
        std::fprintf(stderr,
                     "fxhost: %s: has a variable frame rate; it is resampled to %s frames per second\n",
                     m_Request.input.c_str(), video.rate.text().c_str());
        std::vector<long> frames = ResampledFrames(video.times, video.rate);
        // Frames that the file declares but does not contain must not be passed over in silence.
        for (long frame = video.packets + 1; frame <= video.declaredFrames; ++frame)
            frames.push_back(frame);
        return frames;
    }

    void openRaw() {
        const auto [width, height] = ParsePixelSize("--raw", m_Options.raw);
        requireFirstFrame("standard input");
        const long required = m_Input.range ? m_Input.range->last : 0;
        m_Input.plan.endless = !m_Input.range;
        if (m_Input.range)
            listFrames(*m_Input.range);
        m_Input.source = ReadRawFrames(STDIN_FILENO, width, height, m_Request.depth.value_or(8), required,
                                       m_Request.alphaIn);
    }

    void openStill() {
        if (!m_Input.range)
            throw WrongUse("--output " + m_Request.output +
                           ": --frames FIRST-LAST is needed, because the number of frames does not follow "
                           "from " +
                           (m_Request.input.empty() ? "an empty layer" : m_Request.input));
        m_Input.zeroFrame = std::min(1L, m_Input.range->first);
        listFrames(*m_Input.range);
        m_Input.source = RepeatPicture(
            m_Request.input.empty() ? Picture(m_Request.width, m_Request.height, m_Request.depth.value_or(8))
                                    : ReadPicture(m_Request.input, m_Request.depth, m_Request.alphaIn),
            m_Request.input);
    }

    // Videos and streams number their frames from 1.
    void requireFirstFrame(const char* input) const {
        if (m_Input.range && m_Input.range->first < 1)
            throw WrongUse("--frames " + m_Options.frames + ": the frames of " + input + " begin with 1");
    }

    // `available`: the frames of the input, which are used when --frames is not given.
    void listFrames(const FrameRange& available) {
        if (!m_Input.range)
            m_Input.range = available;
        const Shard shard = m_Options.shard.empty() ? Shard() : Shard::Parse(m_Options.shard);
        for (std::size_t place = 0; place < m_Input.range->size(); ++place)
            if (shard.has(place))
                m_Input.plan.frames.push_back({m_Input.range->at(place), place});
        m_Input.plan.total = m_Input.plan.frames.size();
    }

    const ClipOptions& m_Options;
    const ClipRequest& m_Request;
    ClipInput m_Input;
};

} // namespace

ClipInput OpenClipInput(const ClipOptions& options, const ClipRequest& request) {
    return InputOpener(options, request).open();
}

} // namespace fxhost
