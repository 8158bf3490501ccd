#include "clips/ClipOutput.h"

#include <cstdio>
#include <unistd.h>

#include "clips/NumberPattern.h"
#include "clips/PictureSink.h"
#include "clips/RawFrames.h"
#include "clips/VideoSink.h"

namespace fxhost {

namespace {

std::set<long> PlannedNumbers(const FramePlan& plan) {
    std::set<long> numbers;
    for (const FrameId& frame : plan.frames)
        numbers.insert(frame.number);
    return numbers;
}

// Everything that decides what the frames look like, one line each.
std::string Identity(const ClipOptions& options, const ClipRequest& request, const ClipInput& input) {
    std::string identity;
    const auto add = [&](const std::string& text) { identity += text + "\n"; };
    for (const auto& text : request.identity)
        add(text);
    for (const auto& text :
         {request.input, options.keys, options.codec, options.pixelFormat, options.codecOptions,
          input.range ? input.range->text() : "", input.rate.text(), std::to_string(input.source->depth()),
          std::to_string(input.source->width()) + "x" + std::to_string(input.source->height()),
          std::to_string(input.zeroFrame), std::to_string(request.time)})
        add(text);
    return identity;
}

// The sound of the input, when each output frame is an input frame at its own time.
SoundTrack SoundFor(const ClipOptions& options, const ClipRequest& request, const ClipInput& input) {
    if (!input.video || !input.video->hasSound)
        return {};
    if (!input.range || input.range->step != 1 || input.rate != input.video->rate) {
        std::fprintf(stderr, "fxhost: the sound of %s is left out, because the frames have another speed\n",
                     request.input.c_str());
        return {};
    }
    SoundTrack sound;
    sound.path = request.input;
    sound.start = input.rate.timeOf(static_cast<double>(input.range->first - 1));
    if (!options.frames.empty())
        sound.seconds = input.rate.timeOf(static_cast<double>(input.range->size()));
    return sound;
}

std::unique_ptr<FrameSink> OpenVideoOutput(const ClipOptions& options, const ClipRequest& request,
                                           const ClipInput& input) {
    VideoJob job;
    job.path = request.output;
    job.options = {options.codec, options.pixelFormat, options.codecOptions};
    job.content.rate = input.rate;
    job.content.hasAlpha = input.source->hasAlpha();
    if (input.video) {
        job.content.matrix = input.video->matrix;
        job.content.primaries = input.video->primaries;
        job.content.transfer = input.video->transfer;
    }
    job.sound = SoundFor(options, request, input);
    job.resume = options.resume;
    job.identity = Identity(options, request, input);
    job.frames = input.plan.total;
    return WriteVideo(job);
}

} // namespace

std::unique_ptr<FrameSink> OpenClipOutput(const ClipOptions& options, const ClipRequest& request,
                                          const ClipInput& input) {
    if (request.output == "-")
        return WriteRawFrames(STDOUT_FILENO);
    if (request.output == DiscardPath)
        return DiscardFrames();
    if (const auto pattern = NumberPattern::Parse("--output", request.output))
        return WritePictures(*pattern, options.resume, PlannedNumbers(input.plan));
    return OpenVideoOutput(options, request, input);
}

} // namespace fxhost
