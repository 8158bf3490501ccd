#include "clips/Clip.h"

#include <cstdio>

#include "guard/StopRequest.h"
#include "toolkit/Errors.h"

namespace fxhost {

Animation ReadAnimation(const ClipOptions& options, const std::vector<std::string>& settings,
                        const std::vector<Parameter>& parameters, const FrameRate& rate) {
    Animation animation;
    if (!options.keys.empty())
        AddKeysFile(animation, options.keys, parameters, rate);
    for (const auto& setting : settings)
        AddSetting(animation, setting, parameters, rate);
    return animation;
}

double Clip::timeOf(long number) const {
    return m_Request.time + m_Rate.timeOf(static_cast<double>(number - m_ZeroFrame));
}

std::string Clip::howToGoOn(std::size_t done) const {
    const std::size_t before = m_Plan.endless ? 0 : m_Plan.total - m_Plan.frames.size();
    const std::size_t safe = m_Sink->safe(before + done);
    std::string text = std::to_string(safe) + (m_Plan.total ? " of " + std::to_string(m_Plan.total) : "") +
                       " frames are written" +
                       (m_Sink->keptIn().empty() ? "" : " as whole parts in " + m_Sink->keptIn());
    if (m_Sink->isResumable() && !m_Plan.endless)
        return text + "; the same command with --resume goes on after them";
    if (safe < m_Plan.size())
        text += "; --frames " + std::to_string(m_Plan.at(safe).number) + "-" +
                (m_Plan.endless ? "LAST" : std::to_string(m_Plan.frames.back().number)) +
                " goes on after them";
    return text;
}

int Clip::run(FrameRenderer& renderer, const Animation& animation, const std::vector<LayerInput>& layers,
              const std::function<void()>& afterFrame) {
    const StopScope stop(true);
    Progress progress(stderr, m_Options.quiet ? Progress::Style::None : Progress::StyleFor(stderr),
                      m_Plan.endless ? 0 : m_Plan.frames.size());
    const auto render = [&](const FrameId& frame, Picture input) {
        FrameInputs request;
        request.input = std::move(input);
        request.time = timeOf(frame.number);
        request.settings = animation.at(request.time);
        request.layers = layers;
        Picture picture = renderer.render(request);
        afterFrame();
        return picture;
    };
    PipelineResult result;
    try {
        result = RunPipeline(*m_Source, *m_Sink, m_Plan, render, progress);
    } catch (const WrongUse& error) {
        throw WrongUse(std::string(error.what()) + "; " + howToGoOn(progress.done()));
    } catch (const EffectFailure& error) {
        const std::string text = error.text() + "; " + howToGoOn(progress.done());
        throw error.file().empty() ? EffectFailure(text) : EffectFailure(error.file(), text);
    }
    if (result.stopped) {
        std::fprintf(stderr, "fxhost: stopped; %s\n", howToGoOn(progress.done()).c_str());
        return ExitStopped;
    }
    if (!m_Options.quiet)
        std::fprintf(stderr, "%s in %.1f s, of which rendering %.1f s\n",
                     ProgressText(result.rendered, 0, progress.seconds()).c_str(), progress.seconds(),
                     result.renderSeconds);
    return ExitOk;
}

} // namespace fxhost
