#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>

#include "check/EffectCheck.h"
#include "check/FindingJson.h"
#include "tool/Commands.h"
#include "tool/GuardOptions.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

using Json = nlohmann::ordered_json;

struct CheckOptions {
    std::vector<std::string> effects;
    bool json = false;
    bool strict = false;
    GuardLimits limits;
};

struct Outcome {
    std::vector<Diagnostic> findings;
    int status = ExitOk;
};

// A file without a name that parent and child share: the child may end at any moment, and what it has found
// so far is kept.
class Findings {
public:
    Findings() : m_File(std::tmpfile()) {
        if (!m_File)
            throw EffectFailure(std::string("no temporary file can be made: ") + std::strerror(errno));
    }

    void add(const Diagnostic& finding) {
        std::fprintf(m_File.get(), "%s\n", OneLine(ToJson(finding)).c_str());
        std::fflush(m_File.get());
    }

    std::vector<Diagnostic> readAll() {
        std::string text;
        std::rewind(m_File.get());
        for (int c = std::fgetc(m_File.get()); c != EOF; c = std::fgetc(m_File.get()))
            text += static_cast<char>(c);
        std::vector<Diagnostic> findings;
        std::istringstream lines(text.substr(0, text.rfind('\n') + 1)); // the last may be cut off
        for (std::string line; std::getline(lines, line);)
            findings.push_back(FromJson(Json::parse(line)));
        return findings;
    }

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> m_File;
};

int CheckInChild(const std::string& effect, Findings& findings) {
    const auto fail = [&](const std::string& file, const std::string& text, int status) {
        findings.add({file.empty() ? effect : file, 0, Severity::Error, text, {}});
        return status;
    };
    try {
        CheckEffect(effect, [&](const Diagnostic& finding) { findings.add(finding); });
        return ExitOk;
    } catch (const WrongUse& error) {
        return fail("fxhost", error.what(), ExitWrongUse);
    } catch (const EffectFailure& error) {
        return fail(error.file(), error.text(), ExitEffectFailed);
    }
}

// One effect in a process, since a package stays open in it; and a guarded one.
Outcome CheckOne(const std::string& effect, const CheckOptions& options) {
    Findings findings;
    Outcome outcome;
    outcome.status = RunGuarded(options.limits, effect, [&] { return CheckInChild(effect, findings); });
    outcome.findings = findings.readAll();
    if (outcome.status == ExitRanAway)
        outcome.findings.push_back(
            {effect,
             0,
             Severity::Error,
             "did not come to its end; the guard's message tells the frame and the stage",
             {}});
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
    AddGuardOptions(*app, options->limits);
    app->footer(
        "Exit status: 0 no errors; 1 errors; 2 wrong use; 4 an effect crashed or did not come to an end.\n\n"
        "Examples:\n  fxhost check effects/blur effects/glow\n  fxhost check --strict --json blob.dat");
    return {app, [options] { return Check(*options); }};
}

} // namespace fxhost
