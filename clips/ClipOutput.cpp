#include "clips/ClipOutput.h"

#include <algorithm>
#include <unistd.h>

#include "clips/NumberPattern.h"
#include "clips/PictureSink.h"
#include "clips/ProtectedFiles.h"
#include "clips/RawFrames.h"
#include "clips/Timecode.h"
#include "clips/VideoSink.h"
#include "toolkit/ContentDigest.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

std::set<long> PlannedNumbers(const FramePlan& plan) {
    std::set<long> numbers;
    for (const FrameId& frame : plan.frames)
        numbers.insert(frame.number);
    return numbers;
}

// Everything besides the frames that decides what the parts of a video look like.
std::string EncoderIdentity(const ClipOptions& options, const VideoContent& content) {
    std::string identity;
    for (const auto& text :
         {options.codec, options.pixelFormat, options.codecOptions, content.rate.text(),
          std::to_string(content.start), std::string(content.hasAlpha ? "alpha" : "opaque"), content.matrix,
          content.primaries, content.transfer, std::string(content.isFullRange ? "full" : ""),
          content.pixelAspect, content.masteringDisplay, content.contentLight})
        identity += text + "\n";
    return identity;
}

std::string SoundIdentity(const SoundTrack& sound) {
    ContentDigest digest;
    digest.addFileState(sound.path);
    digest.add(sound.start);
    digest.add(sound.seconds);
    return std::to_string(digest.value());
}

// The sound and the subtitles of the input, when each output frame is an input frame at its own time.
SoundTrack SoundFor(const ClipOptions& options, const ClipRequest& request, const ClipInput& input) {
    if (!input.video || (!input.video->hasSound && input.video->metadata.subtitles.empty()))
        return {};
    const auto& frames = input.plan.frames;
    const long firstNumber = frames.front().number;
    const bool hasGaps = frames.back().number - firstNumber + 1 != static_cast<long>(frames.size());
    if (hasGaps || input.rate != input.video->rate) {
        PrintMessage(MessageKind::Warning,
                     "the sound of " + request.input + " is left out, because the frames have another speed");
        return {};
    }
    SoundTrack sound;
    sound.path = request.input;
    sound.hasSound = input.video->hasSound;
    sound.subtitles = input.video->metadata.subtitles;
    const double first = input.firstFrameTime + input.rate.timeOf(static_cast<double>(firstNumber - 1));
    if (firstNumber > 1)
        sound.start = first;
    if (!options.frames.empty())
        sound.seconds = first - sound.start + input.rate.timeOf(static_cast<double>(frames.size()));
    return sound;
}

// --audio: a sound file whose beginning belongs to time 0 of the clip.
SoundTrack SoundOfFile(const ClipOptions& options, const ClipInput& input) {
    RequireSound("--audio", options.audio);
    const auto& frames = input.plan.frames;
    if (frames.empty() ||
        frames.back().number - frames.front().number + 1 != static_cast<long>(frames.size()))
        throw WrongUse("--audio " + options.audio + ": expected frames without gaps");
    SoundTrack sound;
    sound.path = options.audio;
    sound.start =
        input.rate.timeOf(static_cast<double>(std::max(0L, frames.front().number - input.zeroFrame)));
    sound.seconds = input.rate.timeOf(static_cast<double>(frames.size()));
    return sound;
}

// The output has the chapters of the input when it has the same frames at the same times.
MetadataSource MetadataSourceOf(const ClipRequest& request, const ClipInput& input) {
    const auto& frames = input.plan.frames;
    MetadataSource source{request.input, input.video->metadata, true};
    source.keepsChapters = frames.front().number == 1 && input.rate == input.video->rate &&
                           frames.back().number == static_cast<long>(frames.size()) &&
                           frames.back().number >= input.video->packets;
    const std::string& timecode = input.video->metadata.timecode;
    source.metadata.timecode = TimecodeLater(timecode, frames.front().number - 1, input.rate);
    return source;
}

std::unique_ptr<FrameSink> OpenVideoOutput(const ClipOptions& options, const ClipRequest& request,
                                           const ClipInput& input) {
    VideoJob job;
    job.path = request.output;
    job.options = {options.codec, options.pixelFormat, options.codecOptions};
    job.content.rate = input.rate;
    job.width = input.source->width();
    job.height = input.source->height();
    job.depth = input.source->depth();
    job.alpha = request.writing.alpha;
    job.content.hasAlpha = input.source->hasAlpha();
    if (input.video) {
        job.content.matrix = input.video->matrix;
        const VideoMetadata& metadata = input.video->metadata;
        job.content.primaries = metadata.primaries;
        job.content.transfer = metadata.transfer;
        job.content.isFullRange = metadata.isFullRange;
        job.content.pixelAspect = metadata.pixelAspect;
        job.content.masteringDisplay = metadata.masteringDisplay;
        job.content.contentLight = metadata.contentLight;
        job.source = MetadataSourceOf(request, input);
    }
    job.sound = options.audio.empty() ? SoundFor(options, request, input) : SoundOfFile(options, input);
    if (options.audio.empty() && !job.sound.path.empty() &&
        job.sound.start == 0) // A sound from its beginning may start before the video.
        job.content.start = input.firstFrameTime;
    job.resume = options.resume;
    job.replace = !options.keepExisting;
    job.identity = EncoderIdentity(options, job.content);
    job.soundIdentity = SoundIdentity(job.sound);
    return WriteVideo(job);
}

ProtectedFiles InputFiles(const ClipOptions& options, const ClipRequest& request, const ClipInput& input) {
    ProtectedFiles files;
    for (const std::string& path : request.otherInputs)
        files.add(path);
    files.add(request.input);
    files.add(options.audio);
    for (const FrameId& frame : input.plan.frames)
        files.add(input.source->file(frame.number));
    return files;
}

void RequireNoInputAsOutput(const ClipOptions& options, const ClipRequest& request, const ClipInput& input) {
    if (request.output == "-")
        return;
    const ProtectedFiles files = InputFiles(options, request, input);
    files.requireOther(request.output);
    if (const auto pattern = NumberPattern::Parse("--output", request.output))
        for (const FrameId& frame : input.plan.frames)
            files.requireOther(pattern->path(frame.number));
}

} // namespace

std::unique_ptr<FrameSink> OpenClipOutput(const ClipOptions& options, const ClipRequest& request,
                                          const ClipInput& input) {
    RequireNoInputAsOutput(options, request, input);
    if (request.output == "-")
        return WriteRawFrames(STDOUT_FILENO, request.writing.alpha);
    if (request.output == DiscardPath)
        return DiscardFrames();
    if (const auto pattern = NumberPattern::Parse("--output", request.output))
        return WritePictures(
            {*pattern, PlannedNumbers(input.plan), request.writing, options.resume, !options.keepExisting});
    return OpenVideoOutput(options, request, input);
}

} // namespace fxhost
