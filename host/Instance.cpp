#include "host/Instance.h"

#include "engine/IPlugin.h"

namespace Adapter {

namespace {
EngineInstance s_Selected;
InstanceScope* s_Innermost = nullptr;
} // namespace

InstanceScope::InstanceScope(IPlugin& engine) : m_Engine(engine), m_Before(s_Selected), m_Outer(s_Innermost) {
    s_Innermost = this;
}

InstanceScope::~InstanceScope() {
    s_Innermost = m_Outer;
    if (!m_Outer || m_Before == s_Selected)
        return;
    try {
        SelectSequence(m_Engine, m_Before.sequence);
        SelectComposition(m_Engine, m_Before.compWidth, m_Before.compHeight, m_Before.compPixelAspect);
    } catch (...) {
        // The result of the inner command is already decided; the outer one meets the engine's failure
        // itself.
    }
}

void* InitSequence(IPlugin& engine) {
    void* sequence = engine.initSequenceData();
    s_Selected.sequence = sequence;
    return sequence;
}

void ReleaseSequence(IPlugin& engine, void* sequence) {
    const auto forget = [sequence](EngineInstance& instance) {
        if (instance.sequence == sequence)
            instance.sequence = nullptr;
    };
    forget(s_Selected);
    for (InstanceScope* scope = s_Innermost; scope; scope = scope->m_Outer)
        forget(scope->m_Before);
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
