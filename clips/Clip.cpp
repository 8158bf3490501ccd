#include "clips/Clip.h"

#include <cstdio>
#include <filesystem>

#include "clips/ClipOutput.h"
#include "clips/FrameDigests.h"
#include "clips/FrameList.h"
#include "clips/NumberPattern.h"
#include "clips/VideoProbe.h"
#include "guard/Stage.h"
#include "guard/StopRequest.h"
#include "toolkit/ContentDigest.h"
#include "toolkit/Errors.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

void RequireSensibleOptions(const ClipOptions& options, const ClipRequest& request) {
    const bool isRawInput = request.input == "-";
    if (isRawInput && options.raw.empty())
        throw WrongUse("--input -: --raw WIDTHxHEIGHT is needed for frames from standard input");
    if (!isRawInput && !options.raw.empty())
        throw WrongUse("--raw: only for --input -, which reads raw frames from standard input");
    if (options.resume && (request.output == "-" || request.output == DiscardPath))
        throw WrongUse("--resume: expected numbered pictures or a video for --output, because " +
                       request.output + " keeps no frames to continue from");
    if (isRawInput && options.frames.empty() && (options.resume || !options.shard.empty()))
        throw WrongUse("--input -: --resume and --shard need --frames FIRST-LAST");
    if (!options.audio.empty() && !IsVideoName(request.output))
        throw WrongUse("--audio: expected a video for --output");
    if (!options.shard.empty() && !NumberPattern::Parse("--output", request.output))
        throw WrongUse("--shard: expected numbered pictures for --output, such as out_####.png");
}

std::string BytesText(std::uint64_t bytes) {
    constexpr const char* units[] = {"bytes", "kB", "MB", "GB", "TB"};
    double number = static_cast<double>(bytes);
    std::size_t unit = 0;
    for (; number >= 1000 && unit < 4; ++unit)
        number /= 1000;
    char text[32];
    std::snprintf(text, sizeof text, number < 10 && unit ? "%.1f %s" : "%.0f %s", number, units[unit]);
    return text;
}

ClipInput OpenCheckedInput(const ClipOptions& options, const ClipRequest& request) {
    RequireSensibleOptions(options, request);
    return OpenClipInput(options, request);
}

} // namespace

Clip::Clip(const ClipOptions& options, const ClipRequest& request)
    : m_Options(options), m_Request(request), m_Input(OpenCheckedInput(options, request)),
      m_Sink(OpenClipOutput(options, request, m_Input)) {}

double Clip::timeOf(long number) const {
    return m_Request.time + m_Input.rate.timeOf(static_cast<double>(number - m_Input.zeroFrame));
}

// `done`: frames that this run has written.
std::string Clip::continuationHint(std::size_t done) const {
    const FramePlan& plan = m_Input.plan;
    const std::size_t earlier = plan.endless ? 0 : plan.total - plan.frames.size();
    const std::size_t durable = m_Sink->durableFrames(earlier + done);
    const std::string folder = m_Sink->partsFolder();
    std::string text = std::to_string(durable) + (plan.total ? " of " + std::to_string(plan.total) : "") +
                       " frames are written" + (folder.empty() ? "" : " as complete parts in " + folder);
    if (m_Sink->isResumable() && !plan.endless && durable > 0)
        return text + "; the same command with --resume continues after them";
    if (durable < plan.size() && durable > 0)
        text += "; --frames " + std::to_string(plan.at(durable).number) + "-" +
                (plan.endless ? "LAST" : std::to_string(plan.frames.back().number)) + " continues after them";
    return text;
}

PipelineResult Clip::renderAll(const RenderFunction& render, Progress& progress) {
    try {
        return RunPipeline(*m_Input.source, *m_Sink, m_Input.plan, render, progress);
    } catch (const WrongUse& error) {
        throw WrongUse(std::string(error.what()) + "; " + continuationHint(progress.written()));
    } catch (const EffectFailure& error) {
        const std::string text = error.text() + "; " + continuationHint(progress.written());
        throw error.file().empty() ? EffectFailure(text) : EffectFailure(error.file(), text);
    }
}

void Clip::startSink(const Animation& animation, const std::vector<LayerInput>& layers) {
    ContentDigest common;
    common.add(m_Request.identity);
    common.add(static_cast<std::uint64_t>(m_Request.reading.alpha));
    common.add(static_cast<std::uint64_t>(m_Request.writing.alpha));
    common.add(static_cast<std::uint64_t>(m_Options.interlacing));
    const FrameDigests digests(common.value(), *m_Input.source, animation, layers);
    for (FrameId& frame : m_Input.plan.frames)
        frame.digest = digests.of(frame.number, timeOf(frame.number));
    m_Sink->start(m_Input.plan);
    if (m_Options.resume)
        skipFinishedFrames();
}

void Clip::skipFinishedFrames() {
    std::size_t outdated = 0;
    std::erase_if(m_Input.plan.frames, [&](const FrameId& frame) {
        const FrameSink::Earlier earlier = m_Sink->earlier(frame);
        outdated += earlier == FrameSink::Earlier::Outdated ? 1 : 0;
        return earlier == FrameSink::Earlier::Complete;
    });
    if (outdated)
        PrintMessage(
            MessageKind::Note,
            "--resume: " + std::to_string(outdated) + " of " + std::to_string(m_Input.plan.total) +
                " frames are rendered again, because they are incomplete, or the effect, a parameter, "
                "an input, an option or the tool has changed");
}

int Clip::run(FrameRenderer& renderer, const Animation& animation, const std::vector<LayerInput>& layers,
              const std::function<bool()>& hasFailed) {
    const StopScope stop(true);
    startSink(animation, layers);
    const bool isSilent = m_Options.quiet || UsesJsonEvents();
    Progress progress(stderr, isSilent ? Progress::Style::None : Progress::StyleFor(stderr),
                      m_Input.plan.endless ? 0 : m_Input.plan.frames.size());
    const auto render = [&](const FrameId& frame, Picture input) {
        const double time = timeOf(frame.number);
        Picture picture = renderer.render({std::move(input), time, animation.at(time), layers});
        return RenderedFrame{std::move(picture), hasFailed()};
    };
    return report(renderAll(render, progress), progress);
}

// The first frame of a stream is only known when it arrives, so an empty one takes its place.
Picture Clip::renderFirst(FrameRenderer& renderer, const Animation& animation,
                          const std::vector<LayerInput>& layers) {
    const long number = m_Input.plan.at(0).number;
    const double time = timeOf(number);
    FrameSource& source = *m_Input.source;
    auto input = m_Request.input == "-" ? Picture(width(), height(), depth()) : source.read(number);
    if (!input)
        throw WrongUse("--input " + m_Request.input + ": has no frame " + std::to_string(number));
    ReportFrame(number);
    const auto origin = input->origin;
    Picture picture = renderer.render({std::move(*input), time, animation.at(time), layers});
    picture.origin = origin;
    return picture;
}

void Clip::requireSpace(std::uint64_t bytes) const {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::absolute(m_Request.output).parent_path();
    const std::uintmax_t available = std::filesystem::space(folder, error).available;
    const std::uint64_t needed = bytes * m_Input.plan.frames.size();
    if (!error && needed > available)
        throw EffectFailure("--output " + m_Request.output + ": about " + BytesText(needed) +
                            " are needed, but " + folder.string() + " has " + BytesText(available));
}

int Clip::dryRun(FrameRenderer& renderer, const Animation& animation, const std::vector<LayerInput>& layers,
                 const std::function<bool()>& hasFailed) {
    const StopScope stop(false);
    const Picture picture = renderFirst(renderer, animation, layers);
    if (hasFailed())
        return ExitEffectFailed;
    const std::uint64_t bytes = m_Sink->tryOut(picture);
    requireSpace(bytes);
    const FramePlan& plan = m_Input.plan;
    std::vector<long> numbers;
    for (const FrameId& frame : plan.frames)
        numbers.push_back(frame.number);
    PrintMessage(
        MessageKind::Note,
        "dry run: " +
            (plan.endless ? "all frames"
                          : std::to_string(numbers.size()) + " frames (" + NumbersText(numbers) + ")") +
            " of " + std::to_string(picture.width) + "x" + std::to_string(picture.height) + " pixels with " +
            std::to_string(picture.depth) + " bits per channel at " + rate().text() + " frames per second" +
            (bytes ? ", about " + BytesText(bytes) + " each" : ""));
    return ExitOk;
}

int Clip::report(const PipelineResult& result, const Progress& progress) const {
    if (!result.failed.empty())
        PrintMessage(MessageKind::Error, "the effect failed in " + std::to_string(result.failed.size()) +
                                             " frames, which are not written: " + NumbersText(result.failed));
    if (result.stopped) {
        PrintMessage(MessageKind::Note, "stopped; " + continuationHint(progress.written()));
        return StopStatus();
    }
    if (!m_Options.quiet && !UsesJsonEvents())
        std::fprintf(stderr, "%s in %.1f s, of which rendering %.1f s\n",
                     ProgressText(result.rendered, 0, progress.seconds()).c_str(), progress.seconds(),
                     result.renderSeconds);
    return result.failed.empty() ? ExitOk : ExitEffectFailed;
}

} // namespace fxhost
