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

const EngineInstance& SelectedInstance();
// Tells the engine again about an instance that it was told of before.
void SelectInstance(IPlugin& engine, const EngineInstance& instance);

// The IPlugin calls that change what is selected.
void* InitSequence(IPlugin& engine);
void ReleaseSequence(IPlugin& engine, void* sequence);
void SelectSequence(IPlugin& engine, void* sequence);
void SelectComposition(IPlugin& engine, unsigned width, unsigned height, float pixelAspect);

} // namespace Adapter
