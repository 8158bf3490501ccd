#include <filesystem>
#include <fstream>
#include <future>

#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

#include "validate/ParamValues.h"
#include "validate/TestTable.h"
#include "validate/Trial.h"

namespace validate {

namespace {

using stricthost::Instance;

constexpr unsigned s_Width = 40, s_Height = 24;

// Bytes that the C library's allocator has given out; 0 where it does not report them.
std::size_t AllocatedBytes() {
#if defined(__GLIBC__)
    return mallinfo2().uordblks + mallinfo2().hblkhd;
#else
    return 0;
#endif
}

long OpenFiles() {
    std::error_code problem;
    long count = 0;
    for (std::filesystem::directory_iterator file("/proc/self/fd", problem), end; !problem && file != end;
         file.increment(problem))
        ++count;
    return count;
}

void LifeCycle(Trial& trial, const fxhost::Picture& input) {
    Instance& instance = trial.Apply(s_Width, s_Height);
    trial.Render(instance, FrameOf(input));
    instance.SaveAndReopen();
    instance.Duplicate().Delete();
    instance.Delete();
}

// The memory of the host's handles does not count. The host keeps a small object for each instance.
void CheckGrowth(TestRun& run, stricthost::Personality personality) {
    constexpr int cycles = 100, settle = 20;
    constexpr std::size_t allowedPerCycle = 24 << 10;
    Trial trial(run, run.OptionsFor(personality));
    const auto input = Noise(s_Width, s_Height, 8);
    for (int i = 0; i < settle; ++i)
        LifeCycle(trial, input);
    const std::size_t bytes = AllocatedBytes() - trial.Host().HandleBytes();
    const long files = OpenFiles();
    for (int i = settle; i < cycles; ++i)
        LifeCycle(trial, input);
    const std::size_t after = AllocatedBytes() - trial.Host().HandleBytes();
    // The address sanitizer's allocator reports nothing, and then the differences mean nothing.
    if (AllocatedBytes() != 0 && after > bytes + (cycles - settle) * allowedPerCycle)
        trial.Fail("memory grows by " + std::to_string((after - bytes) / (cycles - settle) / 1024) +
                   " KiB with each life cycle");
    if (OpenFiles() > files + 2)
        trial.Fail("the number of open files grows from " + std::to_string(files) + " to " +
                   std::to_string(OpenFiles()) + " in " + std::to_string(cycles - settle) + " life cycles");
}

// Runs the plug-in from set-up to set-down with memory for this many handles; false when memory sufficed. The
// plug-in may return errors here, but must not crash.
bool RunsOutOfMemory(TestRun& run, stricthost::Personality personality, long allocations) {
    stricthost::Options options = run.OptionsFor(personality);
    options.allocations = allocations;
    const auto input = Noise(s_Width, s_Height, 8);
    stricthost::StrictHost host(run.Entry(), options);
    bool failed = false;
    try {
        host.GlobalSetup();
        host.ParamsSetup();
        Instance& instance = host.NewInstance();
        instance.UpdateUI();
        failed = instance.Render(FrameOf(input)).error != PF_Err_NONE;
        instance.Duplicate();
    } catch (const stricthost::CommandError&) {
        failed = true;
    }
    host.Finish();
    for (const std::string& violation : host.Violations())
        run.Fail(violation + " (when memory runs out after " + std::to_string(allocations) + " handles, in " +
                 NameOf(personality) + ")");
    return failed;
}

} // namespace

void LifeCycles(TestRun& run) {
    for (const auto personality : run.Personalities())
        CheckGrowth(run, personality);
}

void OutOfMemory(TestRun& run) {
    constexpr long most = 40;
    for (const auto personality : run.Personalities())
        for (long allocations = 0; allocations < most; ++allocations)
            if (!RunsOutOfMemory(run, personality, allocations))
                break;
}

// Interrupts at the first callback of a frame, the second, and so on, and expects a whole frame afterwards.
void Interruptions(TestRun& run) {
    constexpr unsigned most = 60;
    for (const auto personality : run.Personalities()) {
        const auto input = Noise(s_Width, s_Height, 8);
        bool interrupted = true;
        for (unsigned at = 1; interrupted && at <= most; ++at) {
            stricthost::Options options = run.OptionsFor(personality);
            options.interruptAt = at;
            Trial trial(run, options, "with an interruption at callback " + std::to_string(at));
            Instance& instance = trial.Apply(s_Width, s_Height);
            const auto result = instance.Render(FrameOf(input));
            if (result.error != PF_Err_NONE && result.error != PF_Interrupt_CANCEL)
                trial.Fail("rendering returned error " + std::to_string(result.error));
            interrupted = trial.Host().LastFrameCallbacks() >= at;
        }
    }
}

namespace {

// Quirks that may change a picture: by design, or because the plug-in reads the field or order of channels.
bool MayChangePictures(const stricthost::Quirks& quirks) {
    return quirks.fields || quirks.bgra || quirks.nullRenderData || quirks.bareLayers;
}

// expected: null when the quirk may change the picture.
void LiveWithQuirk(Trial& trial, const fxhost::Picture& input, const fxhost::Picture* expected) {
    Instance& instance = trial.Apply(s_Width, s_Height);
    SetVariant(trial.Host(), instance, 2);
    Instance& copy = instance.Duplicate();
    copy.UpdateUI();
    instance.SaveAndReopen();
    instance.UpdateUI();
    for (Instance* one : {&instance, &copy}) {
        const auto got = trial.Render(*one, FrameOf(input));
        if (expected)
            trial.ExpectSame(got, *expected, "from the one of a forgiving host");
        one->Delete();
    }
}

void RunWithQuirk(TestRun& run, stricthost::Personality personality, const stricthost::QuirkRow& row) {
    const auto input = Noise(s_Width, s_Height, 8);
    stricthost::Options options = run.OptionsFor(personality);
    fxhost::Picture expected;
    {
        Trial plain(run, options);
        Instance& instance = plain.Apply(s_Width, s_Height);
        SetVariant(plain.Host(), instance, 2);
        expected = plain.Render(instance, FrameOf(input));
    }
    options.quirks.*row.flag = true;
    if (options.quirks.bundleReference && !run.HasBundleReference())
        return; // a bare module
    Trial trial(run, options, std::string("with the quirk ") + row.name);
    try {
        LiveWithQuirk(trial, input, MayChangePictures(options.quirks) ? nullptr : &expected);
    } catch (const stricthost::CommandError& error) {
        trial.Fail(error.what());
    }
}

} // namespace

void HostQuirks(TestRun& run) {
    for (const auto personality : run.Personalities())
        for (const stricthost::QuirkRow* row = stricthost::QuirkTable(); row->name; ++row)
            try {
                RunWithQuirk(run, personality, *row);
            } catch (const std::runtime_error& error) {
                run.Fail(error.what());
            }
}

namespace {

// Renders frames of one variant in turn, and compares each with the expected one.
void RenderManyFrames(Trial& trial, unsigned variant, const fxhost::Picture& input,
                      const fxhost::Picture& expected) {
    Instance& instance = trial.Apply(s_Width, s_Height);
    SetVariant(trial.Host(), instance, variant);
    for (int i = 0; i < 12; ++i)
        trial.ExpectSame(trial.Render(instance, FrameOf(input, 5)), expected,
                         "while other threads render other instances");
}

} // namespace

void ParallelRendering(TestRun& run) {
    constexpr unsigned threads = 4;
    for (const auto personality : run.Personalities()) {
        Trial trial(run, run.OptionsFor(personality));
        const auto input = Noise(s_Width, s_Height, 8);
        std::vector<fxhost::Picture> expected;
        for (unsigned variant = 0; variant < threads; ++variant) {
            Instance& instance = trial.Apply(s_Width, s_Height);
            SetVariant(trial.Host(), instance, variant);
            expected.push_back(trial.Render(instance, FrameOf(input, 5)));
        }
        std::vector<std::future<void>> workers;
        for (unsigned variant = 0; variant < threads; ++variant)
            workers.push_back(std::async(std::launch::async, [&, variant] {
                RenderManyFrames(trial, variant, input, expected[variant]);
            }));
        for (auto& worker : workers)
            worker.get();
    }
}

} // namespace validate
