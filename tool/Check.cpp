#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>

#include "check/DiagnosticJson.h"
#include "check/EffectCheck.h"
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

// A temporary file that parent and child process share. It keeps the diagnostics that the child has written,
// even when the child is killed.
class DiagnosticFile {
public:
    DiagnosticFile() : m_File(std::tmpfile()) {
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
        std::istringstream lines(text.substr(0, text.rfind('\n') + 1)); // the last line may be incomplete
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

int CheckInChild(const std::string& effect, DiagnosticFile& findings) {
    const auto fail = [&](const std::string& file, int line, const std::string& text, int status) {
        findings.add({file.empty() ? effect : file, line, Severity::Error, text, {}});
        return status;
    };
    try {
        CheckEffect(effect, [&](const Diagnostic& finding) { findings.add(finding); });
        return ExitOk;
    } catch (const WrongUse& error) {
        return fail("fxhost", 0, error.what(), ExitWrongUse);
    } catch (const EffectFailure& error) {
        return fail(error.file(), error.line(), error.text(), ExitEffectFailed);
    }
}

// Runs each effect in a process of its own, because the engine keeps a package open. The process is guarded.
Outcome CheckOne(const std::string& effect, const CheckOptions& options) {
    DiagnosticFile findings;
    Outcome outcome;
    outcome.status = RunGuarded(options.limits, effect, [&] { return CheckInChild(effect, findings); });
    outcome.findings = findings.readAll();
    if (outcome.status == ExitRanAway)
        outcome.findings.push_back({effect,
                                    0,
                                    Severity::Error,
                                    "the check was stopped; the message above names the frame and the stage",
                                    {}});
    return outcome;
}

// Diagnostics affect the status only when the effect ran.
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
        tool.add_subcommand("check", "Find mistakes in effects, including those that the engine ignores");
    app->add_option("EFFECT", options->effects, "Folders that hold fx.js, or package files")->required();
    app->add_flag("--json", options->json, "Print JSON, for editors and continuous integration");
    app->add_flag("--strict", options->strict, "Treat warnings as errors");
    AddGuardOptions(*app, options->limits);
    app->footer(
        "Exit status: 1 when an effect has errors; with --strict also when it has warnings.\n\n"
        "Examples:\n  fxhost check effects/blur effects/glow\n  fxhost check --strict --json blob.dat");
    return {app, [options] { return Check(*options); }};
}

} // namespace fxhost
