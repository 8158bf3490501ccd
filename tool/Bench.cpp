#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "drivers/StageTimer.h"
#include "guard/Stage.h"
#include "tool/Commands.h"
#include "tool/EngineSession.h"
#include "tool/FrameOptions.h"
#include "tool/GuardOptions.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned s_WarmUp = 5; // frames that are rendered before the measurement

struct BenchOptions {
    FrameOptions frame;
    unsigned frames = 100;
    bool json = false;
    GuardLimits limits;
};

struct Row {
    const char* name;
    Spread spread;
};

std::vector<Row> Rows(const StageTimer& timer) {
    std::vector<Row> rows;
    for (const Stage stage : TimedStages)
        rows.push_back({TimedStageName(stage), SpreadOf(timer.times(stage))});
    rows.push_back({"frame", SpreadOf(timer.frames())});
    return rows;
}

void PrintText(const std::vector<Row>& rows, const Picture& input, unsigned frames) {
    std::printf("%ux%u at %u bits, %u frames, milliseconds\n%-10s %9s %9s %9s\n", input.width, input.height,
                input.depth, frames, "", "median", "10 %", "90 %");
    for (const Row& row : rows)
        std::printf("%-10s %9.3f %9.3f %9.3f\n", row.name, row.spread.median, row.spread.low,
                    row.spread.high);
    if (const double frame = rows.back().spread.median; frame > 0)
        std::printf("%.1f frames a second\n", 1000 / frame);
}

void PrintJson(const std::vector<Row>& rows, const Picture& input, unsigned frames) {
    Json report = {
        {"width", input.width}, {"height", input.height}, {"depth", input.depth}, {"frames", frames}};
    for (const Row& row : rows)
        report["milliseconds"][row.name] = {
            {"median", row.spread.median}, {"p10", row.spread.low}, {"p90", row.spread.high}};
    std::printf("%s\n", report.dump(2).c_str());
}

int Bench(const BenchOptions& options) {
    Picture input = InputLayer(options.frame);
    EngineSession session(options.frame.effect);
    FrameInputs request = MakeFrameInputs(options.frame, std::move(input), session.driver().parameters());
    StageTimer timer;
    session.driver().onStage([&](Stage stage) { timer.begin(stage); });
    for (unsigned frame = 0; frame < s_WarmUp + options.frames; ++frame) {
        if (frame == s_WarmUp)
            timer.forget();
        ReportFrame(static_cast<long>(frame));
        session.driver().render(request);
        request.time += 1.0 / 25;
    }
    session.reportAll();
    (options.json ? PrintJson : PrintText)(Rows(timer), request.input, options.frames);
    return session.failed() ? ExitEffectFailed : ExitOk;
}

} // namespace

Command AddBench(CLI::App& tool) {
    const auto options = std::make_shared<BenchOptions>();
    CLI::App* app = tool.add_subcommand("bench", "Measure the time of each step of a frame");
    AddFrameOptions(*app, options->frame)->required();
    app->add_option("-n,--frames", options->frames, "Frames to measure")
        ->check(CLI::Range(1u, 1000000u))
        ->capture_default_str()
        ->type_name("COUNT");
    app->add_flag("--json", options->json, "Print JSON");
    AddGuardOptions(*app, options->limits);
    app->footer(
        "The steps of a frame: preRender (the script chooses the size), upload, script (draw() until it\n"
        "returns), draw (what the GPU does after that), read-back, copy-out.\n\n"
        "Example:\n  fxhost bench effects/blur --size 1920x1080 --depth 16 --frames 200");
    return {app, [options] {
                return RunGuarded(options->limits, options->frame.effect, [&] { return Bench(*options); });
            }};
}

} // namespace fxhost
