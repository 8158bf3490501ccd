// How a clip finds its input, its frames and its output.

#include <algorithm>
#include <filesystem>
#include <unistd.h>

#include "clips/Clip.h"
#include "clips/Pictures.h"
#include "clips/RawFrames.h"
#include "clips/VideoSink.h"
#include "clips/VideoSource.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

constexpr FrameRate s_UsualRate{24, 1};
constexpr const char* s_Nowhere = "/dev/null";

} // namespace

Clip::Clip(const ClipOptions& options, const ClipRequest& request) : m_Options(options), m_Request(request) {
    if (!options.frames.empty())
        m_Range = FrameRange::Parse(options.frames);
    m_Rate = options.fps.empty() ? s_UsualRate : FrameRate::Parse(options.fps);
    checkCombination();
    openInput();
    if (options.zeroFrame)
        m_ZeroFrame = *options.zeroFrame;
    openOutput();
}

void Clip::checkCombination() const {
    const bool rawInput = m_Request.input == "-";
    if (rawInput && m_Options.raw.empty())
        throw WrongUse("--input -: --raw WIDTHxHEIGHT is needed for frames from standard input");
    if (!rawInput && !m_Options.raw.empty())
        throw WrongUse("--raw: only for --input -, which reads raw frames from standard input");
    if (m_Options.resume && (m_Request.output == "-" || m_Request.output == s_Nowhere))
        throw WrongUse("--resume: numbered pictures or a video are expected for --output; standard output "
                       "keeps nothing to go on from");
    if (rawInput && !m_Range && (m_Options.resume || !m_Options.shard.empty()))
        throw WrongUse("--input -: --resume and --shard need --frames FIRST-LAST");
    if (!m_Options.shard.empty() && !NumberPattern::Parse("--output", m_Request.output))
        throw WrongUse("--shard: numbered pictures are expected for --output, such as out_####.png");
    if (!m_Request.input.empty() && m_Request.input != "-" && m_Request.input == m_Request.output)
        throw WrongUse("--output " + m_Request.output + ": is the input; other files were expected");
}

void Clip::openInput() {
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

void Clip::openPictures(const NumberPattern& pattern) {
    const auto numbers = pattern.numbersOnDisk();
    if (numbers.empty())
        throw WrongUse("--input " + pattern.text() + ": there is no such picture, not " +
                       pattern.path(m_Range ? m_Range->first : 1) + " nor any other number");
    m_ZeroFrame = numbers.front();
    listFrames(FrameRange{numbers.front(), numbers.back(), 1});
    m_Source = OpenPictures(pattern, m_Range->first, m_Request.depth);
}

void Clip::openVideo() {
    m_Video = ProbeVideo(m_Request.input);
    if (m_Options.fps.empty())
        m_Rate = m_Video->rate;
    const long last = m_Range ? m_Range->last : 0;
    if (m_Range && m_Range->first < 1)
        throw WrongUse("--frames " + m_Options.frames + ": the frames of a video begin with 1");
    listFrames(FrameRange{1, std::max({m_Video->frames, m_Video->promised, 1L}), 1});
    m_Source = OpenVideo(m_Request.input, *m_Video, m_Request.depth, last);
}

void Clip::openRaw() {
    const auto [width, height] = ParsePixelSize("--raw", m_Options.raw);
    if (m_Range && m_Range->first < 1)
        throw WrongUse("--frames " + m_Options.frames + ": the frames of standard input begin with 1");
    const long last = m_Range ? m_Range->last : 0;
    m_Plan.endless = !m_Range;
    if (m_Range)
        listFrames(std::nullopt);
    m_Source = ReadRawFrames(STDIN_FILENO, width, height, m_Request.depth.value_or(8), last);
}

void Clip::openStill() {
    if (!m_Range)
        throw WrongUse("--output " + m_Request.output +
                       ": --frames FIRST-LAST is needed to tell how many "
                       "frames to make of " +
                       (m_Request.input.empty() ? "an empty layer" : m_Request.input));
    m_ZeroFrame = std::min(1L, m_Range->first);
    listFrames(std::nullopt);
    m_Source = RepeatPicture(m_Request.input.empty()
                                 ? Picture(m_Request.width, m_Request.height, m_Request.depth.value_or(8))
                                 : ReadPicture(m_Request.input, m_Request.depth));
}

// `all`: what the input has, for when nothing is asked for.
void Clip::listFrames(std::optional<FrameRange> all) {
    if (!m_Range)
        m_Range = all;
    const Shard shard = m_Options.shard.empty() ? Shard() : Shard::Parse(m_Options.shard);
    for (std::size_t place = 0; place < m_Range->size(); ++place)
        if (shard.has(place))
            m_Plan.frames.push_back({m_Range->at(place), place});
    m_Plan.total = m_Plan.frames.size();
}

void Clip::openOutput() {
    const std::string& output = m_Request.output;
    if (output == "-")
        m_Sink = WriteRawFrames(STDOUT_FILENO);
    else if (output == s_Nowhere)
        m_Sink = DiscardFrames();
    else if (const auto pattern = NumberPattern::Parse("--output", output)) {
        std::set<long> planned;
        for (const FrameId& frame : m_Plan.frames)
            planned.insert(frame.number);
        m_Sink = WritePictures(*pattern, m_Options.resume, planned);
    } else
        m_Sink = videoSink();
    if (m_Options.resume)
        std::erase_if(m_Plan.frames, [&](const FrameId& frame) { return m_Sink->has(frame); });
}

std::unique_ptr<FrameSink> Clip::videoSink() const {
    VideoJob job;
    job.path = m_Request.output;
    job.wishes = {m_Options.codec, m_Options.pixelFormat, m_Options.codecOptions};
    job.content.rate = m_Rate;
    job.content.hasAlpha = m_Source->hasAlpha();
    job.resume = m_Options.resume;
    job.frames = m_Plan.total;
    if (m_Video) {
        job.content.matrix = m_Video->matrix;
        job.content.primaries = m_Video->primaries;
        job.content.transfer = m_Video->transfer;
    }
    const bool inTime = m_Range && m_Range->step == 1 && m_Video && m_Rate == m_Video->rate;
    if (m_Video && m_Video->hasSound && inTime) {
        job.sound.path = m_Request.input;
        job.sound.start = m_Rate.timeOf(static_cast<double>(m_Range->first - 1));
        if (!m_Options.frames.empty())
            job.sound.seconds = m_Rate.timeOf(static_cast<double>(m_Range->size()));
    } else if (m_Video && m_Video->hasSound) {
        std::fprintf(stderr, "fxhost: the sound of %s is left out: the frames have another speed\n",
                     m_Request.input.c_str());
    }

    const auto add = [&](const std::string& text) { job.plan += text + "\n"; };
    for (const auto& text : m_Request.identity)
        add(text);
    for (const auto& text :
         {m_Request.input, m_Options.keys, m_Options.codec, m_Options.pixelFormat, m_Options.codecOptions,
          m_Range ? m_Range->text() : "", m_Rate.text(), std::to_string(depth()),
          std::to_string(m_Source->width()) + "x" + std::to_string(m_Source->height()),
          std::to_string(m_ZeroFrame), std::to_string(m_Request.time)})
        add(text);
    return WriteVideo(job);
}

} // namespace fxhost
