#include <cstdio>
#include <memory>

#include "tool/Commands.h"
#include "tool/HostOptions.h"
#include "toolkit/Errors.h"
#include "validate/TraceReplay.h"

namespace fxhost {

namespace {

struct CompareOptions {
    validate::TraceOptions trace;
    std::vector<std::string> strictHost;
};

int Compare(CompareOptions& options) {
    options.trace.host.quirks = ParseQuirks(options.strictHost);
    const std::string difference = validate::FirstDifference(options.trace);
    std::printf("%s\n", difference.empty() ? "no difference" : difference.c_str());
    return difference.empty() ? ExitOk : ExitEffectFailed;
}

} // namespace

Command AddCompareTrace(CLI::App& tool) {
    const auto options = std::make_shared<CompareOptions>();
    CLI::App* app = tool.add_subcommand(
        "compare-trace", "Find the first difference between a real host's commands and the emulated one's");
    app->add_option("TRACE", options->trace.trace, "File that the probe wrote in the real host")->required();
    app->add_option("--probe", options->trace.probe, "Module of the probe for this system, trace_probe.so")
        ->required()
        ->type_name("FILE");
    app->add_option("--ignore", options->trace.ignore, "Names of fields that may differ")
        ->delimiter(',')
        ->type_name("FIELD,...");
    AddStrictHostOption(*app, options->strictHost);
    app->footer(
        "Exit status: 0 no difference; 1 a difference; 2 wrong use.\n\n"
        "Example:\n  fxhost compare-trace fx-trace.jsonl --probe build/release/traceprobe/trace_probe.so "
        "--strict-host resetup-thread");
    return {app, [options] { return Compare(*options); }};
}

} // namespace fxhost
