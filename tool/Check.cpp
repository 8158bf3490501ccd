#include <cstdio>
#include <memory>

#include "check/DiagnosticJson.h"
#include "tool/Commands.h"
#include "tool/FileWatch.h"
#include "tool/GuardOptions.h"
#include "tool/GuardedCheck.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

using Json = nlohmann::ordered_json;

struct CheckOptions {
    std::vector<std::string> effects;
    bool json = false;
    bool strict = false;
    bool quiet = false;
    bool watch = false;
    GuardLimits limits;
};

// Diagnostics affect the status only when the effect ran.
int StatusOf(const CheckResult& result, bool strict) {
    int status = result.status;
    for (const Diagnostic& finding : result.diagnostics)
        if (status == ExitOk && (strict || finding.severity == Severity::Error))
            status = ExitEffectFailed;
    return status;
}

void Print(const std::string& effect, const CheckResult& result, bool quiet) {
    for (const Diagnostic& finding : result.diagnostics)
        if (!quiet || finding.severity == Severity::Error)
            std::fprintf(stderr, "%s\n", ToText(finding).c_str());
    if (!quiet && result.diagnostics.empty())
        std::printf("%s: nothing found\n", effect.c_str());
}

int Check(const CheckOptions& options) {
    int worst = ExitOk;
    Json report = Json::array();
    for (const auto& effect : options.effects) {
        const CheckResult result = CheckGuarded(options.limits, effect);
        worst = std::max(worst, StatusOf(result, options.strict));
        Json findings = Json::array();
        for (const Diagnostic& finding : result.diagnostics)
            findings.push_back(ToJson(finding));
        report.push_back({{"effect", effect}, {"findings", findings}});
        if (!options.json)
            Print(effect, result, options.quiet);
    }
    if (options.json)
        std::printf("%s\n", report.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    return worst;
}

} // namespace

Command AddCheck(CLI::App& tool) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* app =
        tool.add_subcommand("check", "Find mistakes in effects, including those that the engine ignores");
    app->add_option("EFFECT", options->effects, "Folders that hold fx.js, or package files")->required();
    app->add_flag("--json", options->json, "Print JSON, for editors and continuous integration");
    app->add_flag("--strict", options->strict, "Treat warnings as errors");
    app->add_flag("--quiet", options->quiet, "Print errors only");
    app->add_flag("--watch", options->watch, "Check again whenever a file of an effect changes");
    AddGuardOptions(*app, options->limits);
    app->footer(
        "Exit status: 1 when an effect has errors; with --strict also when it has warnings.\n\n"
        "Examples:\n  fxhost check effects/blur effects/glow\n  fxhost check --strict --json blob.dat");
    return {app, [options] {
                return options->watch ? RunOnChange(options->effects, [&] { return Check(*options); })
                                      : Check(*options);
            }};
}

} // namespace fxhost
