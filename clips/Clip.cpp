#include "clips/Clip.h"

#include <cstdio>

#include "clips/ClipOutput.h"
#include "clips/FrameDigests.h"
#include "clips/NumberPattern.h"
#include "guard/StopRequest.h"
#include "toolkit/ContentDigest.h"
#include "toolkit/Errors.h"

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
    if (!options.shard.empty() && !NumberPattern::Parse("--output", request.output))
        throw WrongUse("--shard: expected numbered pictures for --output, such as out_####.png");
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
    if (m_Sink->isResumable() && !plan.endless)
        return text + "; the same command with --resume continues after them";
    if (durable < plan.size())
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
    common.add(static_cast<std::uint64_t>(m_Request.alphaIn));
    common.add(static_cast<std::uint64_t>(m_Request.alphaOut));
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
        std::fprintf(
            stderr,
            "fxhost: --resume: %zu of %zu frames are rendered again, because they are incomplete, or "
            "the effect, a parameter, an input, an option or the tool has changed\n",
            outdated, m_Input.plan.total);
}

int Clip::run(FrameRenderer& renderer, const Animation& animation, const std::vector<LayerInput>& layers,
              const std::function<bool()>& hasFailed) {
    const StopScope stop(true);
    startSink(animation, layers);
    Progress progress(stderr, m_Options.quiet ? Progress::Style::None : Progress::StyleFor(stderr),
                      m_Input.plan.endless ? 0 : m_Input.plan.frames.size());
    const auto render = [&](const FrameId& frame, Picture input) {
        const double time = timeOf(frame.number);
        Picture picture = renderer.render({std::move(input), time, animation.at(time), layers});
        return RenderedFrame{std::move(picture), hasFailed()};
    };
    return report(renderAll(render, progress), progress);
}

int Clip::report(const PipelineResult& result, const Progress& progress) const {
    if (!result.failed.empty())
        std::fprintf(stderr,
                     "fxhost: the effect failed in %zu frames, which are not written; the first is %ld\n",
                     result.failed.size(), result.failed.front());
    if (result.stopped) {
        std::fprintf(stderr, "fxhost: stopped; %s\n", continuationHint(progress.written()).c_str());
        return ExitStopped;
    }
    if (!m_Options.quiet)
        std::fprintf(stderr, "%s in %.1f s, of which rendering %.1f s\n",
                     ProgressText(result.rendered, 0, progress.seconds()).c_str(), progress.seconds(),
                     result.renderSeconds);
    return result.failed.empty() ? ExitOk : ExitEffectFailed;
}

} // namespace fxhost
