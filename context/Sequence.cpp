#include "context/Sequence.h"

#include "context/Context.h"

void Sequence::Init() {
    CloneFrom(*m_Owner);
}

void Sequence::Reset(const Surface& surface, double time) {
    m_Time = time;
    SetOutputExtent(surface.width, surface.height);
    const auto create = [&] {
        m_RenderTarget = m_Owner->InitResource<RenderTarget>(m_OutputWidth, m_OutputHeight, surface.format);
    };
    if (m_RenderTarget == 0)
        create();
    RenderTarget& target = GetRenderTarget();
    if (target.usable())
        target.grabPixels(nullptr, m_OutputWidth, m_OutputHeight, surface.format,
                          static_cast<long>(surface.rowBytes), true, true);
    else
        create(); // the registry keeps the unusable target until its release
}

void Sequence::ResetInputTexture(const Surface& surface) {
    const void* const source = surface.buffer.empty() ? surface.pixels : surface.buffer.data();
    if (!source)
        return;
    const auto create = [&] {
        m_InputTexture = m_Owner->InitResource<Texture>(surface.width, surface.height, surface.format);
    };
    if (m_InputTexture == 0 || m_Owner->GetResource<Texture>(m_InputTexture).id() == 0)
        create();
    Texture& texture = m_Owner->GetResource<Texture>(m_InputTexture);
    if (texture.id() != 0)
        texture.grabPixels(source, surface.width, surface.height, surface.format,
                           static_cast<long>(surface.rowBytes), true, true);
}

RenderTarget& Sequence::GetRenderTarget() const {
    return m_RenderTarget == 0 ? RenderTarget::invalid : m_Owner->GetResource<RenderTarget>(m_RenderTarget);
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
