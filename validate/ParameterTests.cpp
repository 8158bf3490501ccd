#include <map>
#include <set>

#include "validate/ParamValues.h"
#include "validate/Pipl.h"
#include "validate/TestTable.h"
#include "validate/Trial.h"

namespace validate {

namespace {

using stricthost::PublishedParam;

constexpr unsigned s_Width = 40, s_Height = 24;

bool HasValue(const PublishedParam& param) {
    return param.type != PF_Param_GROUP_END && param.type != PF_Param_GROUP_START &&
           param.type != PF_Param_BUTTON;
}

std::string Quoted(std::size_t index, const PublishedParam& param) {
    return "parameter " + std::to_string(index) + " \"" + param.label + "\"";
}

// Empty when the default is right.
std::string DefaultProblem(const PublishedParam& param) {
    const PF_ParamDef& def = param.def;
    if (param.type == PF_Param_FLOAT_SLIDER) {
        if (!(param.validMin <= param.validMax))
            return "has an empty range";
        const double value = def.u.fs_d.dephault;
        if (value < param.validMin || value > param.validMax)
            return "has the default " + std::to_string(value) + " outside its range";
        if (param.sliderMin < param.validMin || param.sliderMax > param.validMax)
            return "has a slider that reaches beyond its valid range";
    }
    if (param.type == PF_Param_CHECKBOX && def.u.bd.dephault != 0 && def.u.bd.dephault != 1)
        return "has a default other than 0 and 1";
    // Zero means no default; hosts then show the first choice.
    if (param.type == PF_Param_POPUP &&
        (def.u.pd.dephault < 0 || def.u.pd.dephault > static_cast<int>(param.choices.size())))
        return "has the default " + std::to_string(def.u.pd.dephault) + ", but choices from 1 to " +
               std::to_string(param.choices.size());
    if (param.type == PF_Param_POPUP && def.u.pd.num_choices != static_cast<int>(param.choices.size()))
        return "counts " + std::to_string(def.u.pd.num_choices) + " choices, but names " +
               std::to_string(param.choices.size());
    return {};
}

} // namespace

void ParameterNames(TestRun& run) {
    Trial trial(run, run.OptionsFor(stricthost::Personality::AfterEffects));
    std::set<std::string> labels;
    const auto& params = trial.Host().Params();
    for (std::size_t i = 1; i < params.size(); ++i) {
        if (HasValue(params[i]) && params[i].label.empty())
            trial.Fail(Quoted(i, params[i]) + " has no name");
        if (HasValue(params[i]) && !labels.insert(params[i].label).second)
            trial.Fail(Quoted(i, params[i]) + " has the name of an earlier one");
    }
}

void ParameterDefaults(TestRun& run) {
    Trial trial(run, run.OptionsFor(stricthost::Personality::AfterEffects));
    const auto& params = trial.Host().Params();
    for (std::size_t i = 1; i < params.size(); ++i)
        if (const std::string problem = DefaultProblem(params[i]); !problem.empty())
            trial.Fail(Quoted(i, params[i]) + " " + problem);
}

void ParameterExtremes(TestRun& run) {
    for (const auto personality : run.Personalities()) {
        Trial trial(run, run.OptionsFor(personality));
        const auto input = Noise(s_Width, s_Height, 8);
        stricthost::Instance& instance = trial.Apply(s_Width, s_Height);
        const auto& params = trial.Host().Params();
        for (std::size_t i = 1; i < params.size(); ++i) {
            const auto before = instance.Value(i);
            for (const auto& value : ValuesToTry(params[i], s_Width, s_Height)) {
                instance.SetValue(i, value);
                const auto result = instance.Render(FrameOf(input));
                if (result.error != PF_Err_NONE)
                    trial.Fail("an extreme value of " + Quoted(i, params[i]) + " gives error " +
                               std::to_string(result.error));
            }
            if (HasValue(params[i]))
                instance.SetValue(i, before);
        }
    }
}

// An animated value must give the same frame as the same value without keyframes.
void AnimatedParameters(TestRun& run) {
    for (const auto personality : run.Personalities()) {
        Trial trial(run, run.OptionsFor(personality));
        const auto input = Noise(s_Width, s_Height, 8);
        stricthost::Instance& animated = trial.Apply(s_Width, s_Height);
        stricthost::Instance& constant = trial.Apply(s_Width, s_Height);
        const auto& params = trial.Host().Params();
        for (std::size_t i = 1; i < params.size(); ++i) {
            const auto values = ValuesToTry(params[i], s_Width, s_Height);
            if (values.size() < 2)
                continue;
            const auto before = animated.Value(i);
            animated.Animate(i,
                             [values](double seconds) { return seconds < 0.5 ? values[0] : values.back(); });
            for (const auto& [time, value] : {std::pair{0, values[0]}, {25, values.back()}}) {
                constant.SetValue(i, value);
                trial.ExpectSame(trial.Render(animated, FrameOf(input, time)),
                                 trial.Render(constant, FrameOf(input, time)),
                                 "when " + Quoted(i, params[i]) + " is animated, at time " +
                                     std::to_string(time));
            }
            animated.SetValue(i, before);
            constant.SetValue(i, before);
        }
    }
}

// A plug-in without a PiPL has nothing to compare; bundles for this system may lack one.
void PiplFlags(TestRun& run) {
    const auto pipl = ReadPipl(run.Path());
    if (!pipl)
        return;
    Trial trial(run, run.OptionsFor(stricthost::Personality::AfterEffects));
    const auto compare = [&](const char* what, std::uint32_t inPipl, std::uint32_t inCode) {
        if (inPipl != inCode)
            trial.Fail(std::string("the PiPL has other ") + what + " (" + std::to_string(inPipl) +
                       ") than GLOBAL_SETUP sets (" + std::to_string(inCode) + ")");
    };
    constexpr std::uint32_t overrides = 1u << 23; // PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS
    if (pipl->outFlags & overrides)
        return;
    compare("output flags", pipl->outFlags, static_cast<std::uint32_t>(trial.Host().OutFlags()));
    compare("output flags 2", pipl->outFlags2, static_cast<std::uint32_t>(trial.Host().OutFlags2()));
    compare("version", pipl->version, trial.Host().Version());
}

} // namespace validate
