#include "context/Sequence.h"

#include <functional>

#include "context/Context.h"
#include "gpu/PixelDepth.h"
#include "parameters/ParameterTraits.h"

namespace {

std::size_t Hash(const std::string& name) {
    return std::hash<std::string>()(name);
}

} // namespace

void Sequence::Init() {
    CloneFrom(*m_Owner);
}

void Sequence::Reset(const Surface& surface, double time) {
    m_Time = time;
    m_FrameWidth = surface.width;
    m_FrameHeight = surface.height;
    m_FrameFormat = surface.format;
    SetOutputExtent(surface.width, surface.height);
    RenderTarget* const target = m_Owner->Find<RenderTarget>(m_RenderTarget);
    if (target && target->usable())
        target->grabPixels(nullptr, m_OutputWidth, m_OutputHeight, surface.format,
                           static_cast<std::ptrdiff_t>(surface.rowBytes), true, true);
    else if (target && !target->errorText().empty()) // frames that fail must not leave one target each
        target->init(m_OutputWidth, m_OutputHeight, surface.format);
    else // the registry keeps a target whose storage was freed
        m_RenderTarget = m_Owner->InitResource<RenderTarget>(m_OutputWidth, m_OutputHeight, surface.format);
}

void Sequence::ResetInputTexture(const Surface& surface) {
    const void* const source = surface.buffer.empty() ? surface.pixels : surface.buffer.data();
    if (!source)
        return;
    Texture* const old = m_Owner->Find<Texture>(m_InputTexture);
    if (old && old->id() == 0 &&
        !old->errorText().empty()) // layers that fail must not leave one texture each
        old->init(surface.width, surface.height, surface.format, true);
    else if (!old || old->id() == 0)
        m_InputTexture = m_Owner->InitResource<Texture>(surface.width, surface.height, surface.format);
    Texture& texture = m_Owner->GetResource<Texture>(m_InputTexture);
    if (texture.id() != 0)
        texture.grabPixels(source, surface.width, surface.height, surface.format,
                           static_cast<std::ptrdiff_t>(surface.rowBytes), true, true);
}

RenderTarget& Sequence::GetRenderTarget() const {
    return m_RenderTarget == 0 ? RenderTarget::invalid : m_Owner->GetResource<RenderTarget>(m_RenderTarget);
}

bool Sequence::HasFrame() const {
    const RenderTarget& target = GetRenderTarget();
    return target.usable() && target.width() == m_FrameWidth && target.height() == m_FrameHeight &&
           PixelDepth::Stored(target.depth()) == PixelDepth::Stored(m_FrameFormat);
}

void Sequence::RestoreTarget() {
    RenderTarget& target = GetRenderTarget();
    if (!target.usable() || HasFrame())
        return;
    RenderTarget scaled;
    if (!scaled.init(m_FrameWidth, m_FrameHeight, m_FrameFormat))
        return;
    target.blit(scaled, false, true);
    target.grabPixels(nullptr, m_FrameWidth, m_FrameHeight, m_FrameFormat, 0, true, true);
    scaled.blit(target, false, false);
}

void Sequence::FreeStorage() {
    if (RenderTarget* const target = m_Owner->Find<RenderTarget>(m_RenderTarget))
        target->freeStorage();
    if (Texture* const texture = m_Owner->Find<Texture>(m_InputTexture))
        texture->freeStorage();
}

std::vector<Sequence::ParameterState> Sequence::OwnState() const {
    std::vector<ParameterState> state;
    for (unsigned i = 0; i < GetNumParams(); ++i) {
        const Parameter& own = GetParamByIdx(i);
        const Parameter* const master = m_Owner->FindOwn<Parameter>(own.handle);
        if (master && (own.value != master->value || own.flags != master->flags))
            state.push_back({Hash(own.name), own.type, own.handle, own.flags, own.value});
    }
    return state;
}

void Sequence::Adopt(std::span<const ParameterState> state) {
    for (const ParameterState& saved : state) {
        Parameter& own = GetParamById(saved.handle);
        if (own.handle == 0 || Hash(own.name) != saved.nameHash || own.type != saved.type)
            continue;
        own.flags = saved.flags;
        if (!TraitsOf(own.type).isTexture())
            own.value = saved.value;
    }
}

void Sequence::ClearFrame() {
    m_RenderTarget = 0;
    m_InputTexture = 0;
    m_Time = 0.0;
}

void Sequence::SetOutputExtent(unsigned int width, unsigned int height) {
    m_OutputWidth = width;
    m_OutputHeight = height;
}

void Sequence::SetInputOrigin(int x, int y) {
    m_InputOriginX = x;
    m_InputOriginY = y;
}
