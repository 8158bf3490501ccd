#pragma once

#include <string>
#include <vector>

#include "check/CallChecks.h"
#include "check/CallRecorder.h"
#include "packaging/EffectSource.h"
#include "pictures/Picture.h"

namespace fxhost {

// Finds mistakes in an effect from one ordinary run of it, without rendering anything more. It examines the
// first calls of native functions and the first frame, so that long runs are not slower. One object per
// process, which exists while the effect runs.
class RenderInspection {
public:
    // `source` must outlive the object. `onPrint` receives the text that the script prints.
    RenderInspection(const EffectSource& source, ScriptMessageListener::Handler onPrint);

    // The change that must be made to the script before the engine reads it.
    static std::string Transform(const std::string& script);

    void beginFrame(const Picture& input);
    void endFrame(const Picture& input, const Picture& result);
    // Warnings since the last call; at first those about the text of the script.
    std::vector<Diagnostic> take();
    // Warnings that the whole run decides. The engine must still hold the effect.
    std::vector<Diagnostic> unsetUniforms() const { return m_Calls.unsetUniforms(m_Source); }

private:
    const EffectSource& m_Source;
    const std::string m_Script;
    CallChecks m_Calls;
    CallRecorder m_Recorder;
    std::vector<Diagnostic> m_Found;
    bool m_IsFirstFrame = true;
};

// True when config.xml of an effect lets its output be larger than its input.
bool MayGrow(const EffectSource& source);

} // namespace fxhost
