#pragma once

class IPlugin;

// One engine object serves every instance of the effect, so each command first selects the instance that it
// concerns. The adapter remembers the selection for commands that run inside another one. All of this is used
// under the global mutex.
namespace Adapter {

struct EngineInstance {
    void* sequence = nullptr; // from IPlugin::initSequenceData; the sequence record owns it
    unsigned compWidth = 0;   // pixels
    unsigned compHeight = 0;
    float compPixelAspect = 0;
    bool operator==(const EngineInstance&) const = default;
};

// Surrounds a command. A host may send a command from inside a callback, for example to render an upstream
// layer; when such an inner command ends, the scope selects the instance of the outer command again.
class InstanceScope {
public:
    explicit InstanceScope(IPlugin& engine);
    ~InstanceScope();
    InstanceScope(const InstanceScope&) = delete;
    InstanceScope& operator=(const InstanceScope&) = delete;

private:
    friend void ReleaseSequence(IPlugin& engine, void* sequence);
    IPlugin& m_Engine;
    EngineInstance m_Before;
    InstanceScope* m_Outer;
};

// The calls of IPlugin that change the selection.
void* InitSequence(IPlugin& engine);
void ReleaseSequence(IPlugin& engine, void* sequence);
void SelectSequence(IPlugin& engine, void* sequence);
void SelectComposition(IPlugin& engine, unsigned width, unsigned height, float pixelAspect);

} // namespace Adapter
