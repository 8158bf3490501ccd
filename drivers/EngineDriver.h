#pragma once

#include <functional>
#include <string>

#include "guard/Stage.h"
#include "packaging/EffectSource.h"
#include "toolkit/FrameRenderer.h"

class IPlugin;

namespace fxhost {

// What an effect's config.xml says of it.
struct EffectInfo {
    std::string name, about, hostId;
    unsigned major = 0, minor = 0, build = 0, stage = 0;
};

// Drives the engine directly, with one instance of the effect. One object at a time, on one thread.
class EngineDriver final : public FrameRenderer {
public:
    // Sets the engine up, which runs the effect's script. Throws EffectFailure without GL, or when config.xml
    // is not XML. `source` must outlive the driver.
    explicit EngineDriver(const EffectSource& source);
    ~EngineDriver() override;
    EngineDriver(const EngineDriver&) = delete;
    EngineDriver& operator=(const EngineDriver&) = delete;

    std::vector<Parameter> parameters() override;
    Picture render(const FrameInputs& request) override;

    EffectInfo info();
    // Runs updateUIFlags, after which parameters() tells which ones are disabled.
    void updateUI();
    // Runs `work` with the frame lock held and the engine's GL context current.
    void whileLocked(const std::function<void()>& work);
    // The listener is called as each stage of each frame begins, with the engine's GL context current.
    void onStage(StageListener listener) { m_OnStage = std::move(listener); }
    // The collected shader errors in the engine's form; empty when all shaders compiled.
    std::string shaderErrors();

private:
    void setValues(const FrameInputs& request);
    Picture result(unsigned width, unsigned height, unsigned depth, StageSpan& span);

    IPlugin& m_Engine;
    StageListener m_OnStage;
    void* m_Sequence = nullptr;
};

} // namespace fxhost
