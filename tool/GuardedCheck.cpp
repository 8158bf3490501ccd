#include "tool/GuardedCheck.h"

#include <algorithm>
#include <cstdio>

#include "check/EffectCheck.h"
#include "check/HangDiagnosis.h"
#include "tool/DiagnosticFile.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// Runs `work` in this process, the child, and writes what it throws to the file.
int RunInChild(const std::string& effect, DiagnosticFile& file, const std::function<void()>& work) {
    const auto fail = [&](const std::string& name, int line, const std::string& text, int status) {
        file.add({name.empty() ? effect : name, line, Severity::Error, text, {}});
        return status;
    };
    try {
        work();
        return ExitOk;
    } catch (const WrongUse& error) {
        return fail("fxhost", 0, error.what(), ExitWrongUse);
    } catch (const EffectFailure& error) {
        return fail(error.file(), error.line(), error.text(), ExitEffectFailed);
    }
}

} // namespace

CheckResult CheckGuarded(const GuardLimits& limits, const std::string& effect) {
    DiagnosticFile file;
    CheckResult result;
    result.status = RunGuarded(limits, effect, [&] {
        return RunInChild(effect, file,
                          [&] { CheckEffect(effect, [&](const Diagnostic& found) { file.add(found); }); });
    });
    result.diagnostics = file.readAll();
    if (result.status == ExitRanAway) {
        for (const Diagnostic& found : FindHang(limits, effect))
            result.diagnostics.push_back(found);
        result.diagnostics.push_back(
            {effect,
             0,
             Severity::Error,
             "the check was stopped; the message above names the frame and the stage",
             {}});
    }
    return result;
}

std::vector<Diagnostic> FindHang(const GuardLimits& limits, const std::string& effect) {
    DiagnosticFile file;
    GuardLimits limited = limits;
    limited.frameSeconds = std::clamp(limits.frameSeconds, 1.0, 5.0);
    limited.isSilent = true;
    RunGuarded(limited, effect, [&] {
        return RunInChild(effect, file, [&] {
            DiagnoseHang(
                effect, [&](const Diagnostic& found) { file.add(found); },
                [&](const std::optional<Diagnostic>& pass) { file.setPending(pass); });
        });
    });
    return file.readAll();
}

void RequireShippable(const GuardLimits& limits, const std::string& effect, const std::string& verb,
                      bool force) {
    const CheckResult result = CheckGuarded(limits, effect);
    bool hasErrors = result.status != ExitOk;
    for (const Diagnostic& found : result.diagnostics) {
        std::fprintf(stderr, "%s\n", ToText(found).c_str());
        hasErrors |= found.severity == Severity::Error;
    }
    if (hasErrors && !force)
        throw EffectFailure(effect, "the effect has errors and is not " + verb + "; --force overrides");
}

} // namespace fxhost
