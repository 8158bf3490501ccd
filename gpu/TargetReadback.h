#pragma once

#include "gpu/RenderTarget.h"

// The pixels of a render target, mapped into memory as long as the object lives. The target must outlive it.
class TargetReadback {
public:
    explicit TargetReadback(RenderTarget& target) : m_Target(target), m_Pixels(target.grabBegin()) {}
    ~TargetReadback() { m_Target.grabEnd(const_cast<void*>(m_Pixels)); }
    TargetReadback(const TargetReadback&) = delete;
    TargetReadback& operator=(const TargetReadback&) = delete;

    // The layout is that of RenderTarget::grabBegin. Null when the target cannot be read.
    const void* pixels() const { return m_Pixels; }

private:
    RenderTarget& m_Target;
    const void* m_Pixels;
};
