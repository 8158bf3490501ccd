#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "check/CallChecks.h"
#include "check/CallRecorder.h"
#include "check/UniformChecks.h"
#include "drivers/EngineDriver.h"
#include "drivers/ScriptErrorCollector.h"
#include "packaging/EffectSource.h"

namespace fxhost {

// A frame that a check renders.
struct CheckFrame {
    unsigned width, height, depth;
    double time = 0.5;
    bool withLayers = true; // layer parameters get a picture
    bool isMarked = false;  // the input is marked, see PictureChecks.h
    double reduction = 1;   // the preview resolution, such as 0.5, at which sliders and points arrive
    bool findsUnsetUniforms = false; // marks uniforms, which changes the picture where they are not set
};

// An effect that runs in the engine while its script errors, its native calls and its uniforms are examined.
// Passes every diagnostic to a listener, each one once. One object per process.
class EffectRun {
public:
    using Listener = std::function<void(const Diagnostic&)>;

    // Runs setup(). Throws WrongUse and EffectFailure as EffectSource and EngineDriver do.
    EffectRun(const std::string& effect, Listener listener);

    // Renders a frame with the values that a host starts with, changed by `settings`.
    Picture render(const CheckFrame& frame, const std::vector<ParameterSetting>& settings = {});

    // Renders a frame after preRender() was called for another one, as hosts do that prepare frames ahead.
    Picture renderAfterPreparing(const CheckFrame& frame, const CheckFrame& other);

    void report(const std::vector<Diagnostic>& diagnostics);
    void warnScript(int line, const std::string& text);
    void reportUniforms();
    // Shader errors and missing files.
    void reportFiles();

    // True when an error was reported.
    bool failed() const { return m_Failed; }
    // What the calls of the last frame did.
    const FrameCalls& calls() const { return m_Calls; }
    const EffectSource& source() const { return m_Source; }
    const std::string& script() const { return m_Script; }
    const std::vector<Parameter>& parameters() const { return m_Parameters; }
    EngineDriver& driver() { return *m_Driver; }
    int lineOf(unsigned handle) const { return m_CallChecks.lineOf(handle); }

private:
    void reportScript();
    void print(const ScriptMessage& message);
    FrameInputs inputs(const CheckFrame& frame, const std::vector<ParameterSetting>& settings) const;

    Listener m_Listener;
    EffectSource m_Source;
    std::string m_Script;
    ScriptErrorCollector m_ScriptErrors;
    CallChecks m_CallChecks;
    CallRecorder m_Recorder;
    std::optional<EngineDriver> m_Driver;
    UniformChecks m_Uniforms;
    std::vector<Parameter> m_Parameters;
    std::vector<Diagnostic> m_Reported;
    std::set<std::string> m_Printed;
    FrameCalls m_Calls;
    long m_FrameNumber = -1; // -1 during setup()
    bool m_Failed = false;
};

} // namespace fxhost
