#pragma once

#include <string>
#include <vector>

#include "drivers/EngineDriver.h"
#include "drivers/ScriptWatch.h"

namespace fxhost {

// Prints an effect's errors to standard error as they come. The effect runs in this process.
class EffectReporter {
public:
    // Opens the effect and listens. Throws WrongUse or EffectFailure when there is none.
    explicit EffectReporter(const std::string& effect);

    const EffectSource& source() const { return m_Source; }
    // Prints what the script did wrong since the last call.
    void reportScript();
    // The same with the shaders' errors and missing files; once, at the end.
    void reportAll();
    // Whether anything that was reported is an error.
    bool failed() const { return m_Failed; }

private:
    void print(const std::vector<Diagnostic>& findings);

    EffectSource m_Source;
    ScriptWatch m_Watch;
    bool m_Failed = false;
};

// One effect on the bare engine, for what is told about it rather than rendered with it.
class EffectSession : public EffectReporter {
public:
    // Script errors of the set-up are reported.
    explicit EffectSession(const std::string& effect);
    EngineDriver& driver() { return m_Driver; }

private:
    EngineDriver m_Driver;
};

} // namespace fxhost
