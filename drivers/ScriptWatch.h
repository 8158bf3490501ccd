#pragma once

#include <vector>

#include "packaging/Diagnostic.h"
#include "packaging/EffectSource.h"
#include "scripting/Scripting.h"

namespace fxhost {

// Listens for script errors, which the engine swallows, as long as it lives. One at a time.
class ScriptWatch {
public:
    explicit ScriptWatch(const EffectSource& source);
    ~ScriptWatch();
    ScriptWatch(const ScriptWatch&) = delete;
    ScriptWatch& operator=(const ScriptWatch&) = delete;

    // What was heard since the last call, each error once however often it comes.
    std::vector<Diagnostic> take();

private:
    bool explainUndefined(Diagnostic& found, const std::string& evaluated) const;
    static void heard(const ScriptError& error);

    const EffectSource& m_Source;
    std::vector<Diagnostic> m_All;
    std::size_t m_Taken = 0;
    bool m_SetupFailed = false;
    static ScriptWatch* s_Current;
};

} // namespace fxhost
