#pragma once

#include <vector>

#include "packaging/Diagnostic.h"
#include "packaging/EffectSource.h"
#include "scripting/Scripting.h"

namespace fxhost {

// Collects the script errors that the engine ignores, from construction to destruction. Only one collector
// may exist at a time.
class ScriptErrorCollector {
public:
    explicit ScriptErrorCollector(const EffectSource& source);
    ~ScriptErrorCollector();
    ScriptErrorCollector(const ScriptErrorCollector&) = delete;
    ScriptErrorCollector& operator=(const ScriptErrorCollector&) = delete;

    // Returns the errors since the last call. An error that occurs repeatedly is returned once.
    std::vector<Diagnostic> take();
    // Returns the number of all errors so far, where each occurrence counts.
    std::size_t count() const { return m_Count; }
    bool hasSetupFailed() const { return m_SetupFailed; }

private:
    bool explainUndefined(Diagnostic& found, const std::string& evaluated) const;
    static void OnError(const ScriptError& error);

    const EffectSource& m_Source;
    std::vector<Diagnostic> m_All;
    std::size_t m_Taken = 0, m_Count = 0;
    bool m_SetupFailed = false;
    static ScriptErrorCollector* s_Current;
};

} // namespace fxhost
