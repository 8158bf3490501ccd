#include <cstdio>
#include <cstring>
#include <memory>

#include "standalone/Errors.h"
#include "standalone/check/EffectCheck.h"
#include "standalone/check/FindingJson.h"
#include "standalone/cli/Commands.h"
#include "standalone/process/Child.h"

namespace fxhost {

namespace {

using Json = nlohmann::ordered_json;

struct CheckOptions {
    std::vector<std::string> effects;
    bool json = false;
    bool strict = false;
    double frameTimeout = 60;
};

// What came out of one effect.
struct Outcome {
    std::vector<Diagnostic> findings;
    std::string stage = "start";
    int status = ExitOk;
};

// In the child: one JSON object a line, either a stage or a finding.
int CheckInChild(const std::string& effect, const SendLine& send) {
    const auto fail = [&](const char* text, int status) {
        send(OneLine({{"failure", text}}));
        return status;
    };
    try {
        CheckEffect(effect, {[&](const std::string& stage) {
                                 send(OneLine({{"stage", stage}}));
                             },
                             [&](const Diagnostic& finding) {
                                 send(OneLine({{"finding", ToJson(finding)}}));
                             }});
        return ExitOk;
    } catch (const WrongUse& error) {
        return fail(error.what(), ExitWrongUse);
    } catch (const std::exception& error) {
        return fail(error.what(), ExitEffectFailed);
    }
}

void Hear(const std::string& line, Outcome& outcome) {
    const Json json = Json::parse(line);
    if (json.contains("stage"))
        outcome.stage = json["stage"];
    else if (json.contains("finding"))
        outcome.findings.push_back(FromJson(json["finding"]));
    else
        outcome.findings.push_back({"fxhost", 0, Severity::Error, json["failure"].get<std::string>(), {}});
}

Outcome CheckOne(const std::string& effect, const CheckOptions& options) {
    Outcome outcome;
    const auto patience = std::chrono::milliseconds(static_cast<long>(options.frameTimeout * 1000));
    const ChildEnd end = RunInChild([&](const SendLine& send) { return CheckInChild(effect, send); },
                                    patience, [&](const std::string& line) { Hear(line, outcome); });
    outcome.status = end.status;
    if (end.how == ChildEnd::How::Exited)
        return outcome;
    outcome.status = ExitRunaway;
    const std::string what =
        end.how == ChildEnd::How::Silent
            ? "did not come to an end within " + std::to_string(options.frameTimeout) + " s"
            : std::string("ended the process: ") + ::strsignal(end.signal);
    outcome.findings.push_back({effect, 0, Severity::Error, outcome.stage + " " + what, {}});
    return outcome;
}

// Findings count towards the status unless the effect did not even run.
int StatusOf(const Outcome& outcome, bool strict) {
    int status = outcome.status;
    for (const Diagnostic& finding : outcome.findings)
        if (status == ExitOk && (strict || finding.severity == Severity::Error))
            status = ExitEffectFailed;
    return status;
}

void Print(const std::string& effect, const Outcome& outcome) {
    for (const Diagnostic& finding : outcome.findings)
        std::fprintf(stderr, "%s\n", ToText(finding).c_str());
    if (outcome.findings.empty())
        std::printf("%s: nothing found\n", effect.c_str());
}

int Check(const CheckOptions& options) {
    int worst = ExitOk;
    Json report = Json::array();
    for (const auto& effect : options.effects) {
        const Outcome outcome = CheckOne(effect, options);
        worst = std::max(worst, StatusOf(outcome, options.strict));
        Json findings = Json::array();
        for (const Diagnostic& finding : outcome.findings)
            findings.push_back(ToJson(finding));
        report.push_back({{"effect", effect}, {"findings", findings}});
        if (!options.json)
            Print(effect, outcome);
    }
    if (options.json)
        std::printf("%s\n", report.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    return worst;
}

} // namespace

Command AddCheck(CLI::App& tool) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* app =
        tool.add_subcommand("check", "Find mistakes in effects, also those that the engine passes over");
    app->add_option("EFFECT", options->effects, "Folders that hold fx.js, or package files")->required();
    app->add_flag("--json", options->json, "Print JSON, for editors and continuous integration");
    app->add_flag("--strict", options->strict, "Let warnings count as errors");
    app->add_option("--frame-timeout", options->frameTimeout, "Longest time for one step; 60 otherwise")
        ->check(CLI::Range(0.1, 86400.0))
        ->type_name("SECONDS");
    app->footer(
        "Exit status: 0 no errors; 1 errors; 2 wrong use; 4 an effect crashed or did not come to an end.\n\n"
        "Examples:\n  fxhost check effects/blur effects/glow\n  fxhost check --strict --json blob.dat");
    return {app, [options] { return Check(*options); }};
}

} // namespace fxhost
