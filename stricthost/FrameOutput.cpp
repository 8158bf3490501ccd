#include "stricthost/FrameOutput.h"

#include "stricthost/HostCore.h"

namespace stricthost {

void CollectOutcome(const HostCall& call, PF_Err err, FrameResult& result) {
    if (result.error == PF_Err_NONE)
        result.error = err;
    result.outFlags |= call.out.out_flags;
    if (result.message.empty())
        result.message = call.Message();
}

void PrepareOutput(const HostCore& host, const FrameState& frame, World& output) {
    if (host.options.checkPixels)
        output.FillWithPattern(frame.patternSeed);
    else
        output.Clear();
    output.Def().pix_aspect_ratio = frame.spec.pixelAspect;
    output.Def().world_flags |= PF_WorldFlag_WRITEABLE;
}

void TakeOutput(const HostCore& host, const FrameState& frame, const World& output, FrameResult& result,
                std::vector<std::uint32_t>& unwritten) {
    result.picture = output.ToPicture();
    if (host.options.checkPixels)
        unwritten = output.FindPattern(frame.patternSeed);
}

} // namespace stricthost
