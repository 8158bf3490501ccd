#pragma once

class IPlugin;

// One engine object serves every instance of the effect, so each command tells it which one it is about.
// What was told last is kept here for commands that run inside another one. Used under the global mutex.
namespace Adapter {

struct EngineInstance {
    void* sequence = nullptr; // from IPlugin::initSequenceData; the sequence record owns it
    unsigned compWidth = 0;   // pixels
    unsigned compHeight = 0;
    float compPixelAspect = 0;
    bool operator==(const EngineInstance&) const = default;
};

// Stands around a command. One that ran inside another (the host renders an upstream layer from within a
// callback) gives the engine back the instance of the outer command.
class InstanceScope {
public:
    InstanceScope();
    ~InstanceScope();
    InstanceScope(const InstanceScope&) = delete;
    InstanceScope& operator=(const InstanceScope&) = delete;

private:
    friend void ReleaseSequence(IPlugin& engine, void* sequence);
    EngineInstance m_Before;
    InstanceScope* m_Outer;
};

// The IPlugin calls that change what is selected.
void* InitSequence(IPlugin& engine);
void ReleaseSequence(IPlugin& engine, void* sequence);
void SelectSequence(IPlugin& engine, void* sequence);
void SelectComposition(IPlugin& engine, unsigned width, unsigned height, float pixelAspect);

} // namespace Adapter
