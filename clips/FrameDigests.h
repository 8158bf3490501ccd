#pragma once

#include <cstdint>
#include <vector>

#include "clips/Animation.h"
#include "clips/FrameSource.h"
#include "toolkit/FrameRenderer.h"

namespace fxhost {

// Computes digests of everything that single frames depend on: the effect and the options (`common`), the
// input and its depth, the layers, and the time and parameter values of the frame.
class FrameDigests {
public:
    // `source` and `animation` must outlive this object.
    FrameDigests(std::uint64_t common, const FrameSource& source, const Animation& animation,
                 const std::vector<LayerInput>& layers);

    // number: of the input frame. time: of the frame, in seconds.
    std::uint64_t of(long number, double time) const;

private:
    std::uint64_t m_Common;
    const FrameSource& m_Source;
    const Animation& m_Animation;
};

} // namespace fxhost
