#pragma once

#include <string>
#include <vector>

#include "drivers/ScriptErrorCollector.h"

namespace fxhost {

struct ReportOptions {
    bool quiet = false;  // print errors only
    bool strict = false; // warnings count as errors
};

// Prints the errors of an effect to standard error when they occur. The effect runs in this process.
class EffectReporter {
public:
    // Opens the effect and starts to collect script errors. Throws as EffectSource::Open.
    explicit EffectReporter(const std::string& effect, const ReportOptions& options = {});

    const EffectSource& source() const { return m_Source; }
    // Prints the script errors since the last call.
    void reportScript();
    // The same, after a frame. Returns true when the frame is wrong: a script error occurred, which may have
    // been printed before, or the effect's set-up or a shader failed.
    bool reportFrame();
    // Prints the script errors since the last call, all shader errors and all missing files. Call it once,
    // after the last frame.
    void reportAll();
    // Prints each diagnostic that was not printed before.
    void print(const std::vector<Diagnostic>& diagnostics);
    // True when an error was printed, or is to be printed by the next call.
    bool hasErrors() const;
    // True when an error, or with `strict` a warning, was found.
    bool failed() const { return m_Failed; }

private:
    const ReportOptions m_Options;
    EffectSource m_Source;
    ScriptErrorCollector m_ScriptErrors;
    std::size_t m_CountedErrors = 0;
    std::vector<Diagnostic> m_Printed;
    bool m_HasErrors = false;
    bool m_Failed = false;
};

} // namespace fxhost
