#pragma once

#include <string>
#include <vector>

#include "standalone/EngineDriver.h"
#include "standalone/ScriptWatch.h"

namespace fxhost {

// One effect, loaded and set up, whose errors go to standard error as they come.
class EffectSession {
public:
    // Throws WrongUse or EffectFailure when there is nothing to run. Script errors of the set-up are
    // reported.
    explicit EffectSession(const std::string& effect);

    const EffectSource& source() const { return m_Source; }
    EngineDriver& driver() { return m_Driver; }

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
    EngineDriver m_Driver;
    bool m_Failed = false;
};

} // namespace fxhost
