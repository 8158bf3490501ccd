#include "host/Instance.h"

#include "engine/IPlugin.h"

namespace Adapter {

namespace {
EngineInstance s_Selected;
}

const EngineInstance& SelectedInstance() {
    return s_Selected;
}

void SelectInstance(IPlugin& engine, const EngineInstance& instance) {
    SelectSequence(engine, instance.sequence);
    SelectComposition(engine, instance.compWidth, instance.compHeight, instance.compPixelAspect);
}

void* InitSequence(IPlugin& engine) {
    void* sequence = engine.initSequenceData();
    s_Selected.sequence = sequence;
    return sequence;
}

void ReleaseSequence(IPlugin& engine, void* sequence) {
    if (s_Selected.sequence == sequence)
        s_Selected.sequence = nullptr;
    engine.releaseSequenceData(sequence);
}

void SelectSequence(IPlugin& engine, void* sequence) {
    s_Selected.sequence = sequence;
    engine.setSequenceData(sequence);
}

void SelectComposition(IPlugin& engine, unsigned width, unsigned height, float pixelAspect) {
    s_Selected.compWidth = width;
    s_Selected.compHeight = height;
    s_Selected.compPixelAspect = pixelAspect;
    engine.setCompositionSize(width, height, pixelAspect);
}

} // namespace Adapter
