#include "clips/ClipInput.h"

#include <algorithm>
#include <filesystem>
#include <unistd.h>

#include "clips/FrameList.h"
#include "clips/FrameTiming.h"
#include "clips/MissingPictures.h"
#include "clips/NumberPattern.h"
#include "clips/PictureSource.h"
#include "clips/RawFrames.h"
#include "clips/VideoSource.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"
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
            m_List = FrameList::Parse(options.frames);
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
        const auto onDisk = pattern.numbersOnDisk();
        if (onDisk.empty())
            throw WrongUse("--input " + pattern.text() + ": there is no such picture, neither " +
                           pattern.path(m_List ? m_List->first() : 1) + " nor one with another number");
        m_Input.zeroFrame = onDisk.front();
        std::vector<long> numbers = numbersIn(onDisk.front(), onDisk.back());
        const PictureNumbers files = ApplyMissing(m_Options.missing, pattern, onDisk, numbers);
        plan(numbers);
        m_Input.source = OpenPictures(pattern, files, m_Request.reading);
        useRateOfPictures();
    }

    // Some pictures state their rate.
    void useRateOfPictures() {
        if (m_Options.fps.empty() && m_Input.source->rate())
            m_Input.rate = *m_Input.source->rate();
    }

    void openVideo() {
        m_Input.video = ProbeVideo(m_Request.input);
        VideoInfo& video = *m_Input.video;
        handleInterlacing();
        if (m_Options.fps.empty())
            m_Input.rate = video.rate;
        m_Input.firstFrameTime = video.start;
        const std::vector<long> frames = video.isVariable ? resample() : std::vector<long>();
        requireFirstFrame("a video");
        const long count = frames.empty() ? std::max({video.packets, video.declaredFrames, 1L})
                                          : static_cast<long>(frames.size());
        const long required = m_List ? m_List->last() : 0;
        if (required > count)
            throw WrongUse("--frames " + m_Options.frames + ": " + m_Request.input + " has only " +
                           std::to_string(count) + " frames");
        plan(numbersIn(1, count));
        m_Input.source = OpenVideo(m_Request.input, video, m_Request.reading.depth, required, frames,
                                   m_Request.reading.alpha, m_Options.allowTruncated);
    }

    void handleInterlacing() {
        VideoInfo& video = *m_Input.video;
        if (video.metadata.fieldOrder.empty())
            return;
        if (m_Options.interlacing == Interlacing::Refuse)
            throw WrongUse("--input " + m_Request.input +
                           ": is interlaced; --interlaced deinterlace makes whole frames of the fields, "
                           "--interlaced keep renders frames with the rows of both");
        video.isDeinterlaced = m_Options.interlacing == Interlacing::Deinterlace;
        if (video.isDeinterlaced)
            video.metadata.fieldOrder.clear();
    }

    // A variable frame rate becomes a constant one, which is the rate of --fps when that is given.
    std::vector<long> resample() {
        VideoInfo& video = *m_Input.video;
        video.rate = m_Input.rate;
        PrintMessage(MessageKind::Warning, m_Request.input +
                                               ": has a variable frame rate; it is resampled to " +
                                               video.rate.text() + " frames per second");
        std::vector<long> frames = ResampledFrames(video.times, video.rate);
        // Frames that the file declares but does not contain must not be passed over in silence.
        for (long frame = video.packets + 1; frame <= video.declaredFrames; ++frame)
            frames.push_back(frame);
        return frames;
    }

    void openRaw() {
        const auto [width, height] = ParsePixelSize("--raw", m_Options.raw);
        requireFirstFrame("standard input");
        const long required = m_List ? m_List->last() : 0;
        m_Input.plan.endless = !m_List || m_List->isOnlyOpen();
        m_Input.plan.first = m_List ? m_List->first() : 1;
        if (!m_Input.plan.endless)
            plan(closedNumbers("standard input"));
        m_Input.source = ReadRawFrames(STDIN_FILENO, width, height, m_Request.reading.depth.value_or(8),
                                       required, m_Request.reading.alpha);
    }

    void openStill() {
        if (!m_List)
            throw WrongUse("--output " + m_Request.output +
                           ": --frames FIRST-LAST is needed, because the number of frames does not follow "
                           "from " +
                           (m_Request.input.empty() ? "an empty layer" : m_Request.input));
        m_Input.zeroFrame = std::min(1L, m_List->first());
        plan(closedNumbers(m_Request.input.empty() ? "an empty layer" : m_Request.input));
        m_Input.source =
            RepeatPicture(m_Request.input.empty() ? Picture(m_Request.width, m_Request.height,
                                                            m_Request.reading.depth.value_or(8))
                                                  : ReadPicture(m_Request.input, m_Request.reading),
                          m_Request.input);
    }

    // Videos and streams number their frames from 1.
    void requireFirstFrame(const char* input) const {
        if (m_List && m_List->first() < 1)
            throw WrongUse("--frames " + m_Options.frames + ": the frames of " + input + " begin with 1");
    }

    // The numbers of --frames, or those from `first` to `last`, which the input has.
    std::vector<long> numbersIn(long first, long last) const {
        const FrameList list =
            m_List ? *m_List : FrameList::Parse(std::to_string(first) + "-" + std::to_string(last));
        std::vector<long> numbers = list.numbers(last);
        if (numbers.empty())
            throw WrongUse("--frames " + m_Options.frames + ": the last frame of " + m_Request.input +
                           " is " + std::to_string(last));
        return numbers;
    }

    // The numbers of --frames for an input without an end.
    std::vector<long> closedNumbers(const std::string& input) const {
        if (m_List->isOpen())
            throw WrongUse("--frames " + m_Options.frames + ": expected a last frame, because " + input +
                           " has no end");
        return m_List->numbers(0);
    }

    // `numbers`: the frames of the whole clip, of which this run may render a share.
    void plan(const std::vector<long>& numbers) {
        const Shard shard = m_Options.shard.empty() ? Shard() : Shard::Parse(m_Options.shard);
        for (std::size_t place = 0; place < numbers.size(); ++place)
            if (shard.has(place))
                m_Input.plan.frames.push_back({numbers[place], place});
        m_Input.plan.total = m_Input.plan.frames.size();
    }

    const ClipOptions& m_Options;
    const ClipRequest& m_Request;
    std::optional<FrameList> m_List; // --frames
    ClipInput m_Input;
};

} // namespace

ClipInput OpenClipInput(const ClipOptions& options, const ClipRequest& request) {
    return InputOpener(options, request).open();
}

} // namespace fxhost
