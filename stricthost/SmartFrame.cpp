#include "stricthost/SmartFrame.h"

#include <cstdlib>

#include "stricthost/FrameOutput.h"
#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/PixelFormats.h"
#include "stricthost/SmartCallbacks.h"
#include "stricthost/SmartState.h"

namespace stricthost {

namespace {

constexpr A_long s_LargestExtent = 30000; // of a world, pixels

bool Contains(const PF_LRect& outer, const PF_LRect& inner) {
    return IsEmpty(inner) || (inner.left >= outer.left && inner.top >= outer.top &&
                              inner.right <= outer.right && inner.bottom <= outer.bottom);
}

bool TooLarge(const PF_LRect& rect) {
    return !IsEmpty(rect) && (static_cast<long long>(rect.right) - rect.left > s_LargestExtent ||
                              static_cast<long long>(rect.bottom) - rect.top > s_LargestExtent);
}

// Sends pre-render and render of one frame.
class SmartFrame {
public:
    SmartFrame(Instance& instance, const FrameState& frame)
        : m_Instance(instance), m_Host(instance.Host()), m_Frame(frame) {
        m_Request.rect = frame.spec.wanted ? *frame.spec.wanted : InputRect(frame.spec);
        m_Request.field = PF_Field_FRAME;
        m_Request.channel_mask = PF_ChannelMask_ARGB;
    }

    ~SmartFrame() {
        if (!m_PreRendered.pre_render_data)
            return;
        if (m_PreRendered.delete_pre_render_data_func)
            m_PreRendered.delete_pre_render_data_func(m_PreRendered.pre_render_data);
        else
            std::free(m_PreRendered.pre_render_data);
    }
    SmartFrame(const SmartFrame&) = delete;
    SmartFrame& operator=(const SmartFrame&) = delete;

    PF_Err PreRender(FrameResult& result) {
        HostCall call(m_Host, PF_Cmd_SMART_PRE_RENDER, &m_Instance);
        Fill(call);
        PF_PreRenderInput input = {};
        input.output_request = m_Request;
        input.bitdepth = static_cast<short>(FormatBits(m_Frame.format));
        PF_PreRenderCallbacks callbacks = PreRenderTable();
        PF_PreRenderExtra extra = {&input, &m_PreRendered, &callbacks};
        const PF_Err err = m_Host.Send(call, nullptr, &extra);
        CollectOutcome(call, err, result);
        if (err == PF_Err_NONE)
            CheckRects(call);
        return err;
    }

    void Render(FrameResult& result, std::vector<std::uint32_t>& unwritten) {
        const PF_LRect& rect = m_PreRendered.result_rect;
        if (IsEmpty(rect) || TooLarge(rect))
            return;
        HostCall call(m_Host, PF_Cmd_SMART_RENDER, &m_Instance);
        Fill(call);
        const PF_LRect input = InputRect(m_Frame.spec);
        call.in.output_origin_x = input.left - rect.left;
        call.in.output_origin_y = input.top - rect.top;
        ScopedWorld output(m_Host.worlds,
                           m_Host.Shape(rect.right - rect.left, rect.bottom - rect.top, m_Frame.format),
                           "the output of SMART_RENDER");
        OfferOutput(*output);
        const PF_Err err = Send(call);
        result.originX = rect.left;
        result.originY = rect.top;
        CollectOutcome(call, err, result);
        if (err == PF_Err_NONE)
            TakeOutput(m_Host, m_Frame, *output, result, unwritten);
    }

private:
    void Fill(HostCall& call) {
        FillFrame(call, m_Frame);
        call.smart = &m_State;
    }

    void CheckRects(const HostCall& call) {
        const PF_PreRenderOutput& out = m_PreRendered;
        if (!Contains(out.max_result_rect, out.result_rect))
            call.Report("promised a result_rect beyond its max_result_rect");
        if (!Contains(m_Request.rect, out.result_rect) &&
            !(out.flags & PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS))
            call.Report(
                "promised pixels beyond the request without PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS");
        if (TooLarge(out.result_rect))
            call.Report("promised a result_rect larger than any world");
    }

    void OfferOutput(World& output) {
        PrepareOutput(m_Host, m_Frame, output);
        m_State.output = &output;
        m_State.outputDef = output.Def();
        m_State.outputDef.origin_x = m_PreRendered.result_rect.left;
        m_State.outputDef.origin_y = m_PreRendered.result_rect.top;
    }

    PF_Err Send(HostCall& call) {
        PF_SmartRenderInput input = {};
        input.output_request = m_Request;
        input.bitdepth = static_cast<short>(FormatBits(m_Frame.format));
        input.pre_render_data = m_PreRendered.pre_render_data;
        PF_SmartRenderCallbacks callbacks = SmartRenderTable();
        PF_SmartRenderExtra extra = {&input, &callbacks};
        const PF_Err err = m_Host.Send(call, nullptr, &extra);
        m_State.worlds.clear(); // they report to the call, which ends here
        m_State.output = nullptr;
        return err;
    }

    Instance& m_Instance;
    HostCore& m_Host;
    const FrameState& m_Frame;
    PF_RenderRequest m_Request = {};
    PF_PreRenderOutput m_PreRendered = {};
    SmartState m_State;
};

} // namespace

FrameResult RenderSmart(Instance& instance, const FrameState& frame, std::vector<std::uint32_t>& unwritten) {
    FrameResult result;
    SmartFrame commands(instance, frame);
    if (commands.PreRender(result) == PF_Err_NONE)
        commands.Render(result, unwritten);
    return result;
}

} // namespace stricthost
