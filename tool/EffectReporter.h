#pragma once

#include <string>
#include <vector>

#include "drivers/ScriptErrorCollector.h"

namespace fxhost {

// Prints the errors of an effect to standard error when they occur. The effect runs in this process.
class EffectReporter {
public:
    // Opens the effect and starts to collect script errors. Throws as EffectSource::Open.
    explicit EffectReporter(const std::string& effect);

    const EffectSource& source() const { return m_Source; }
    // Prints the script errors since the last call.
    void reportScript();
    // The same, after a frame. Returns true when the frame is wrong: a script error occurred, which may have
    // been printed before, or the effect's set-up or a shader failed.
    bool reportFrame();
    // Prints the script errors since the last call, all shader errors and all missing files. Call it once,
    // after the last frame.
    void reportAll();
    // True when an error, not just a warning, was printed.
    bool failed() const { return m_Failed; }

private:
    void print(const std::vector<Diagnostic>& findings);

    EffectSource m_Source;
    ScriptErrorCollector m_ScriptErrors;
    std::size_t m_CountedErrors = 0;
    bool m_Failed = false;
};

} // namespace fxhost
