#include <functional>
#include <thread>

#include "validate/ParamValues.h"
#include "validate/TestTable.h"
#include "validate/Trial.h"

namespace validate {

namespace {

using stricthost::Instance;

constexpr unsigned s_Width = 48, s_Height = 30;

// Runs a step in every personality and depth on an instance with unusual values; `expected` is its frame
// before.
using Step = std::function<void(Trial& trial, Instance& instance, const stricthost::FrameSpec& spec,
                                const fxhost::Picture& expected)>;

void ForEveryDepth(TestRun& run, const stricthost::Quirks& quirks, const Step& step) {
    for (const auto personality : run.Personalities())
        for (const unsigned depth : run.Depths(personality)) {
            stricthost::Options options = run.OptionsFor(personality);
            options.quirks = quirks;
            Trial trial(run, options, "at " + std::to_string(depth) + " bits");
            Instance& instance = trial.Apply(s_Width, s_Height);
            SetVariant(trial.Host(), instance, 1);
            const auto input = Noise(s_Width, s_Height, depth);
            const auto spec = FrameOf(input, 7);
            step(trial, instance, spec, trial.Render(instance, spec));
        }
}

} // namespace

void SameFrameTwice(TestRun& run) {
    ForEveryDepth(run, {}, [](Trial& trial, Instance& instance, const auto& spec, const auto& expected) {
        trial.ExpectSame(trial.Render(instance, spec), expected, "when the frame is rendered again");
        Instance& second = trial.Apply(s_Width, s_Height);
        SetVariant(trial.Host(), second, 1);
        trial.ExpectSame(trial.Render(second, spec), expected, "in a second instance with the same values");
    });
}

void SaveAndReopen(TestRun& run) {
    for (const bool bytes : {false, true}) {
        stricthost::Quirks quirks;
        quirks.byteCopies = bytes;
        ForEveryDepth(run, quirks,
                      [](Trial& trial, Instance& instance, const auto& spec, const auto& expected) {
                          instance.SaveAndReopen();
                          instance.UpdateUI();
                          trial.ExpectSame(trial.Render(instance, spec), expected,
                                           "after the project is saved and reopened");
                      });
    }
}

void DuplicateInstance(TestRun& run) {
    for (const bool bytes : {false, true}) {
        stricthost::Quirks quirks;
        quirks.byteCopies = bytes;
        ForEveryDepth(
            run, quirks, [](Trial& trial, Instance& instance, const auto& spec, const auto& expected) {
                Instance& copy = instance.Duplicate();
                copy.UpdateUI();
                trial.ExpectSame(trial.Render(copy, spec), expected, "in a duplicate");
                trial.ExpectSame(trial.Render(instance, spec), expected, "in the original of a duplicate");
                copy.Delete();
                trial.ExpectSame(trial.Render(instance, spec), expected, "after a duplicate is deleted");
            });
    }
}

void Undo(TestRun& run) {
    ForEveryDepth(run, {}, [](Trial& trial, Instance& instance, const auto& spec, const auto& expected) {
        const std::vector<char> saved = instance.SaveAndReopen();
        instance.Delete();
        Instance& again = trial.Host().OpenInstance(saved.empty() ? nullptr : &saved, s_Width, s_Height);
        again.UpdateUI();
        SetVariant(trial.Host(), again, 1);
        trial.ExpectSame(trial.Render(again, spec), expected, "after deleting the effect and undoing that");
    });
}

void OtherThread(TestRun& run) {
    ForEveryDepth(run, {}, [](Trial& trial, Instance& instance, const auto& spec, const auto& expected) {
        fxhost::Picture got;
        std::thread([&] { got = trial.Render(instance, spec); }).join();
        trial.ExpectSame(got, expected, "on another thread");
    });
}

void FrameOrder(TestRun& run) {
    ForEveryDepth(run, {}, [](Trial& trial, Instance& instance, const auto& spec, const auto& expected) {
        stricthost::FrameSpec other = spec;
        for (const A_long time : {0, 25, 1}) {
            other.time = time;
            trial.Render(instance, other);
            trial.ExpectSame(trial.Render(instance, spec), expected,
                             "after the frame at time " + std::to_string(time));
        }
        const auto smaller = Noise(s_Width / 2, s_Height / 2, spec.input->depth);
        trial.Render(instance, FrameOf(smaller));
        trial.ExpectSame(trial.Render(instance, spec), expected, "after a frame of another size");
    });
}

// Every set of values, the defaults included, must give its own frame before and after every other one.
void SeveralInstances(TestRun& run) {
    constexpr unsigned variants = 3;
    const auto input = Noise(s_Width, s_Height, 8);
    const auto spec = FrameOf(input, 7);
    const auto make = [](Trial& trial, unsigned variant) -> Instance& {
        Instance& instance = trial.Apply(s_Width, s_Height);
        SetVariant(trial.Host(), instance, variant);
        instance.UpdateUI();
        return instance;
    };
    for (const auto personality : run.Personalities()) {
        std::vector<fxhost::Picture> alone;
        for (unsigned variant = 0; variant < variants; ++variant) {
            Trial trial(run, run.OptionsFor(personality));
            alone.push_back(trial.Render(make(trial, variant), spec));
        }
        Trial trial(run, run.OptionsFor(personality));
        for (unsigned pair = 0; pair < variants * variants; ++pair) {
            const unsigned a = pair / variants, b = pair % variants;
            Instance &first = make(trial, a), &second = make(trial, b);
            for (const auto& [instance, variant] : {std::pair{&first, a}, {&second, b}, {&first, a}})
                trial.ExpectSame(trial.Render(*instance, spec), alone[variant],
                                 "after another instance rendered");
        }
    }
}

} // namespace validate
