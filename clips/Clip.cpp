#include "clips/Clip.h"

#include <cstdio>

#include "clips/ClipOutput.h"
#include "clips/NumberPattern.h"
#include "clips/Pipeline.h"
#include "guard/StopRequest.h"
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
    if (!request.input.empty() && !isRawInput && request.input == request.output)
        throw WrongUse("--output " + request.output + ": is the input; expected another file name");
}

ClipInput OpenCheckedInput(const ClipOptions& options, const ClipRequest& request) {
    RequireSensibleOptions(options, request);
    return OpenClipInput(options, request);
}

} // namespace

Clip::Clip(const ClipOptions& options, const ClipRequest& request)
    : m_Options(options), m_Request(request), m_Input(OpenCheckedInput(options, request)),
      m_Sink(OpenClipOutput(options, request, m_Input)) {
    if (options.resume)
        std::erase_if(m_Input.plan.frames, [&](const FrameId& frame) { return m_Sink->isWritten(frame); });
}

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
        throw WrongUse(std::string(error.what()) + "; " + continuationHint(progress.done()));
    } catch (const EffectFailure& error) {
        const std::string text = error.text() + "; " + continuationHint(progress.done());
        throw error.file().empty() ? EffectFailure(text) : EffectFailure(error.file(), text);
    }
}

int Clip::run(FrameRenderer& renderer, const Animation& animation, const std::vector<LayerInput>& layers,
              const std::function<void()>& afterFrame) {
    const StopScope stop(true);
    Progress progress(stderr, m_Options.quiet ? Progress::Style::None : Progress::StyleFor(stderr),
                      m_Input.plan.endless ? 0 : m_Input.plan.frames.size());
    const auto render = [&](const FrameId& frame, Picture input) {
        const double time = timeOf(frame.number);
        Picture picture = renderer.render({std::move(input), time, animation.at(time), layers});
        afterFrame();
        return picture;
    };
    const PipelineResult result = renderAll(render, progress);
    if (result.stopped) {
        std::fprintf(stderr, "fxhost: stopped; %s\n", continuationHint(progress.done()).c_str());
        return ExitStopped;
    }
    if (!m_Options.quiet)
        std::fprintf(stderr, "%s in %.1f s, of which rendering %.1f s\n",
                     ProgressText(result.rendered, 0, progress.seconds()).c_str(), progress.seconds(),
                     result.renderSeconds);
    return ExitOk;
}

} // namespace fxhost
