#pragma once

#include <functional>
#include <string>

#include "guard/Stage.h"
#include "packaging/EffectSource.h"
#include "toolkit/FrameRenderer.h"

class IPlugin;

namespace fxhost {

// Values from the config.xml of an effect.
struct EffectInfo {
    std::string name, about, hostId;
    unsigned major = 0, minor = 0, build = 0, stage = 0;
};

// Renders an effect by calling the engine directly, with one instance of the effect. Only one object may
// exist at a time. All calls come from one thread.
class EngineDriver final : public FrameRenderer {
public:
    // Sets up the engine, which runs the effect's script. Throws EffectFailure when there is no OpenGL or
    // when config.xml is not well-formed. `source` must outlive the driver. `transform`: see
    // EffectSource::Select.
    explicit EngineDriver(const EffectSource& source,
                          const EffectSource::ScriptTransform& transform = nullptr);
    ~EngineDriver() override;
    EngineDriver(const EngineDriver&) = delete;
    EngineDriver& operator=(const EngineDriver&) = delete;

    std::vector<Parameter> parameters() override;
    Picture render(const FrameInputs& request) override;
    // The same in the order of a host that prepares several frames ahead: preRender for the request and for
    // another frame, updateUIFlags, then the request's frame.
    Picture renderAfterPreparing(const FrameInputs& request, const FrameInputs& other);

    EffectInfo info();
    // Adds an instance of the effect. It becomes the current one, to which all other calls refer.
    void addInstance();
    // Makes an instance the current one; 0 is the one that the constructor makes.
    void selectInstance(std::size_t index) { m_Current = index; }
    // Runs the script again, as hosts do when the user asks for it. All instances are made anew.
    void restart();
    // Runs updateUIFlags. After that, parameters() returns which ones are disabled.
    void updateUI();
    // Runs `work` with the frame lock held and the engine's GL context current.
    void whileLocked(const std::function<void()>& work);
    // The listener is called as each stage of each frame begins, with the engine's GL context current.
    void onStage(StageListener listener) { m_OnStage = std::move(listener); }
    // The error text of all shaders that failed, in the engine's format; empty when all shaders compiled.
    std::string shaderErrors();

private:
    void* sequence() const { return m_Sequences[m_Current]; }
    struct Extent {
        unsigned width, height;
    };
    void setValues(const FrameInputs& request);
    Extent prepare(const FrameInputs& request);
    Picture draw(const FrameInputs& request, Extent extent, StageSpan& span);
    Picture result(unsigned width, unsigned height, unsigned depth, StageSpan& span);

    IPlugin& m_Engine;
    StageListener m_OnStage;
    std::vector<void*> m_Sequences; // one for each instance
    std::size_t m_Current = 0;
};

} // namespace fxhost
