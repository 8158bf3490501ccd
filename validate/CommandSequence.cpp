#include "validate/CommandSequence.h"

#include <algorithm>
#include <future>
#include <map>
#include <random>

#include "validate/ParamValues.h"
#include "validate/TestTable.h"
#include "validate/Trial.h"

namespace validate {

namespace {

using stricthost::Instance;

constexpr unsigned s_Slots = 8, s_Threads = 4, s_Variants = 4;

// A frame that steps render, selected by a number.
struct Frame {
    unsigned width, height, depth;
    A_long time;
};

Frame FrameNumber(unsigned number, const std::vector<unsigned>& depths) {
    constexpr std::pair<unsigned, unsigned> sizes[] = {{48, 30}, {17, 9}};
    constexpr A_long times[] = {0, 5, 13};
    const auto [width, height] = sizes[number % 2];
    return {width, height, depths[number / 6 % depths.size()], times[number / 2 % 3]};
}

// Steps render frames 0 to 17 of variants 0 to 3.
using FrameKey = std::pair<unsigned, unsigned>;

class Sequence {
public:
    explicit Sequence(TestRun& run)
        : m_Run(run), m_Options(run.OptionsFor(Choose(run.Personalities(), run.Seed()))),
          m_Depths(run.Depths(m_Options.personality)) {
        if (run.Seed() % 4 == 3)
            m_Options.quirks = HarmlessQuirks(run);
    }

    void Run(const std::vector<Step>& steps) {
        PrepareExpected(steps);
        Trial trial(m_Run, m_Options, "in shuffled commands with seed " + std::to_string(m_Run.Seed()));
        std::vector<std::future<void>> workers;
        for (unsigned thread = 0; thread < s_Threads; ++thread)
            workers.push_back(std::async(std::launch::async, [&, thread] {
                for (const Step& step : steps)
                    if (step.slot % s_Threads == thread)
                        Perform(trial, step);
            }));
        for (auto& worker : workers)
            worker.get();
    }

private:
    struct Slot {
        Instance* instance = nullptr;
        unsigned variant = 0;
    };

    static stricthost::Personality Choose(const std::vector<stricthost::Personality>& from, unsigned seed) {
        return from[seed % from.size()];
    }

    // A selection of the quirks that change no picture.
    static stricthost::Quirks HarmlessQuirks(const TestRun& run) {
        stricthost::Quirks quirks = stricthost::QuirksFromSeed(run.Seed());
        quirks.fields = quirks.bgra = quirks.nullRenderData = quirks.bareLayers = false;
        quirks.bundleReference = quirks.bundleReference && run.HasBundleReference();
        return quirks;
    }

    // Renders what the steps will render, each frame with a new instance in a new host.
    void PrepareExpected(const std::vector<Step>& steps) {
        unsigned variants[s_Slots] = {};
        for (const Step& step : steps) {
            if (step.kind == Step::Change)
                variants[step.slot] = step.value % s_Variants;
            else if (step.kind == Step::Delete)
                variants[step.slot] = 0;
            else if (step.kind == Step::Duplicate)
                variants[Partner(step.slot)] = variants[step.slot];
            else if (step.kind == Step::Render)
                m_Expected[{variants[step.slot], step.value}];
        }
        stricthost::Options forgiving = m_Options;
        forgiving.quirks = {};
        for (auto& [key, picture] : m_Expected) {
            Trial trial(m_Run, forgiving);
            Instance& instance = trial.Apply(48, 30);
            SetVariant(trial.Host(), instance, key.first);
            picture = RenderFrame(trial, instance, key.second);
        }
    }

    fxhost::Picture RenderFrame(Trial& trial, Instance& instance, unsigned number) const {
        const Frame frame = FrameNumber(number, m_Depths);
        const auto input = Noise(frame.width, frame.height, frame.depth);
        return trial.Render(instance, FrameOf(input, frame.time));
    }

    // The other slot of the same thread.
    static unsigned Partner(unsigned slot) { return (slot + s_Threads) % s_Slots; }

    void Perform(Trial& trial, const Step& step) {
        Slot& slot = m_Slots[step.slot];
        if (!slot.instance)
            slot = {&trial.Apply(48, 30), 0};
        switch (step.kind) {
        case Step::Delete:
            slot.instance->Delete();
            slot = {};
            return;
        case Step::Duplicate: {
            Slot& other = m_Slots[Partner(step.slot)];
            if (other.instance)
                other.instance->Delete();
            other = {&slot.instance->Duplicate(), slot.variant};
            other.instance->UpdateUI();
            return;
        }
        case Step::Reopen:
            slot.instance->SaveAndReopen();
            slot.instance->UpdateUI();
            return;
        case Step::Change:
            Change(trial, slot, step.value % s_Variants);
            return;
        case Step::UpdateUI:
            slot.instance->UpdateUI();
            return;
        case Step::UserChanged:
            if (trial.Host().Params().size() > 1)
                slot.instance->UserChanged(1 + step.value % (trial.Host().Params().size() - 1));
            return;
        default:
            trial.ExpectSame(RenderFrame(trial, *slot.instance, step.value),
                             m_Expected.at({slot.variant, step.value}), "after: " + Describe(step));
        }
    }

    // Variant 0 means the defaults, which only a new instance has for certain.
    static void Change(Trial& trial, Slot& slot, unsigned variant) {
        if (variant == 0) {
            slot.instance->Delete();
            slot.instance = &trial.Apply(48, 30);
        }
        SetVariant(trial.Host(), *slot.instance, variant);
        slot.variant = variant;
    }

    TestRun& m_Run;
    stricthost::Options m_Options;
    std::vector<unsigned> m_Depths;
    std::map<FrameKey, fxhost::Picture> m_Expected;
    Slot m_Slots[s_Slots];
};

} // namespace

std::string Describe(const Step& step) {
    constexpr const char* names[] = {"delete",      "duplicate",           "save and reopen",
                                     "set values",  "update the controls", "user changes a control",
                                     "render frame"};
    std::string text = "slot " + std::to_string(step.slot) + ": " + names[step.kind];
    if (step.kind == Step::Change || step.kind == Step::Render)
        text += " " + std::to_string(step.value);
    return text;
}

std::vector<Step> ShuffledSteps(std::uint32_t seed, std::size_t count) {
    std::mt19937 random(seed);
    std::vector<Step> steps;
    for (std::size_t i = 0; i < count; ++i) {
        const auto kind = static_cast<unsigned>(random() % (2 * Step::KindCount));
        steps.push_back({static_cast<Step::Kind>(std::min<unsigned>(kind, Step::Render)),
                         static_cast<unsigned>(random() % s_Slots), static_cast<unsigned>(random() % 18)});
    }
    return steps;
}

void RunSteps(TestRun& run, const std::vector<Step>& steps) {
    Sequence(run).Run(steps);
}

// Delta debugging: leaves out ever smaller parts.
std::vector<Step> Shorten(std::vector<Step> steps, int attempts,
                          const std::function<bool(const std::vector<Step>&)>& fails) {
    for (std::size_t part = (steps.size() + 1) / 2; part > 0 && attempts > 0; part /= 2)
        for (std::size_t begin = 0; begin < steps.size() && attempts > 0;) {
            std::vector<Step> fewer = steps;
            const auto first = fewer.begin() + static_cast<std::ptrdiff_t>(begin);
            fewer.erase(first, first + static_cast<std::ptrdiff_t>(std::min(part, steps.size() - begin)));
            --attempts;
            if (!fewer.empty() && fails(fewer))
                steps = std::move(fewer);
            else
                begin += part;
        }
    return steps;
}

void ShuffledCommands(TestRun& run) {
    RunSteps(run, ShuffledSteps(run.Seed(), run.ShuffledStepCount()));
}

} // namespace validate
