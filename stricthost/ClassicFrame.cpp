#include "stricthost/ClassicFrame.h"

#include "stricthost/FrameOutput.h"
#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/ReadOnlyWorld.h"

namespace stricthost {

namespace {

struct OutputPlace {
    Extents size;
    PF_Point origin; // of the input inside the output
    bool refused;
};

Extents PreparedSize(const FrameSpec& spec) {
    const PF_LRect input = InputRect(spec);
    return {spec.outputWidth ? spec.outputWidth : input.right - input.left,
            spec.outputHeight ? spec.outputHeight : input.bottom - input.top};
}

bool MayResize(PF_OutFlags flags, A_long from, A_long to) {
    return to == from || (flags & (to > from ? PF_OutFlag_I_EXPAND_BUFFER : PF_OutFlag_I_SHRINK_BUFFER)) != 0;
}

// Ignores the plug-in's choice of a size that its flags do not allow, as hosts do.
OutputPlace ChooseOutput(const HostCall& setup, Extents prepared) {
    const PF_OutData& out = setup.out;
    const PF_OutFlags flags = setup.host.outFlags;
    if (out.width == prepared.width && out.height == prepared.height)
        return {prepared, {}, false};
    if (out.width < 0 || out.height < 0) {
        setup.Report("asked for an output of negative size");
        return {prepared, {}, true};
    }
    if (!MayResize(flags, prepared.width, out.width) || !MayResize(flags, prepared.height, out.height))
        return {prepared, {}, true};
    return {{out.width, out.height}, out.origin, false};
}

// Describes the input to commands that may not read its pixels.
PF_LayerDef Description(const HostCall& call, const FrameState& frame) {
    const PF_LRect input = InputRect(frame.spec);
    PF_LayerDef def = {};
    def.width = input.right - input.left;
    def.height = input.bottom - input.top;
    def.rowbytes = static_cast<A_long>(static_cast<unsigned>(def.width) *
                                           (frame.spec.input ? frame.spec.input->depth : 0) / 2 +
                                       call.host.options.rowPadding);
    def.extent_hint = {0, 0, def.width, def.height};
    def.pix_aspect_ratio = frame.spec.pixelAspect;
    return def;
}

// Sends the commands of one frame in their order.
class ClassicFrame {
public:
    ClassicFrame(Instance& instance, const FrameState& frame)
        : m_Instance(instance), m_Host(instance.Host()), m_Frame(frame),
          m_Prepared(PreparedSize(frame.spec)) {}

    PF_Err SetUp(FrameResult& result) {
        HostCall call(m_Host, PF_Cmd_FRAME_SETUP, &m_Instance);
        Fill(call);
        call.params[0].u.ld = Description(call, m_Frame);
        call.out.width = m_Prepared.width;
        call.out.height = m_Prepared.height;
        const PF_Err err = m_Host.Send(call, nullptr, nullptr);
        m_FrameData = call.out.frame_data;
        m_Place = ChooseOutput(call, m_Prepared);
        result.resizeRefused = m_Place.refused;
        CollectOutcome(call, err, result);
        return err;
    }

    void Render(FrameResult& result, std::vector<std::uint32_t>& unwritten) {
        if (m_Place.size.width == 0 || m_Place.size.height == 0)
            return;
        HostCall call(m_Host, PF_Cmd_RENDER, &m_Instance);
        Fill(call);
        const ReadOnlyWorld input(call, CreateInput(call));
        call.params[0].u.ld = input.Get() ? input.Get()->Def() : PF_LayerDef();
        ScopedWorld output(m_Host.worlds,
                           {static_cast<unsigned>(m_Place.size.width),
                            static_cast<unsigned>(m_Place.size.height), m_Frame.format,
                            m_Host.options.rowPadding},
                           "the output of RENDER");
        PrepareOutput(m_Host, m_Frame, *output);
        const PF_Err err = Send(call, *output);
        result.originX = m_Frame.spec.inputX - m_Place.origin.h;
        result.originY = m_Frame.spec.inputY - m_Place.origin.v;
        CollectOutcome(call, err, result);
        if (err == PF_Err_NONE)
            TakeOutput(m_Host, m_Frame, *output, result, unwritten);
    }

    void SetDown(FrameResult& result) {
        HostCall call(m_Host, PF_Cmd_FRAME_SETDOWN, &m_Instance);
        Fill(call);
        call.params[0].u.ld = Description(call, m_Frame);
        const PF_Err err = m_Host.Send(call, nullptr, nullptr);
        CollectOutcome(call, err, result);
        if (m_FrameData && m_Host.handles.IsLive(m_FrameData)) {
            call.Report("did not dispose of frame_data");
            m_Host.handles.DisposeOwn(m_FrameData);
        }
        m_FrameData = nullptr;
    }

private:
    void Fill(HostCall& call) {
        FillFrame(call, m_Frame);
        call.in.frame_data = m_FrameData;
        call.in.output_origin_x = m_Place.origin.h;
        call.in.output_origin_y = m_Place.origin.v;
        call.in.extent_hint = {0, 0, m_Prepared.width, m_Prepared.height};
        call.PassParams(m_Instance.Definitions(call.in));
    }

    PF_Err Send(HostCall& call, World& output) {
        PF_LayerDef def = output.Def();
        const PF_Err err = m_Host.Send(call, &def, nullptr);
        if (call.out.frame_data != m_FrameData)
            call.Report("replaced frame_data");
        return err;
    }

    Instance& m_Instance;
    HostCore& m_Host;
    const FrameState& m_Frame;
    Extents m_Prepared;
    OutputPlace m_Place = {};
    PF_Handle m_FrameData = nullptr;
};

} // namespace

// After Effects sends frame set-up once more, without a render, to plug-ins that may enlarge the output.
FrameResult RenderClassic(Instance& instance, const FrameState& frame,
                          std::vector<std::uint32_t>& unwritten) {
    FrameResult result;
    const HostCore& host = instance.Host();
    ClassicFrame commands(instance, frame);
    if (!host.IsPremiere() && (host.outFlags & PF_OutFlag_I_EXPAND_BUFFER)) {
        if (commands.SetUp(result) != PF_Err_NONE)
            return result;
        commands.SetDown(result);
    }
    if (commands.SetUp(result) != PF_Err_NONE)
        return result;
    commands.Render(result, unwritten);
    commands.SetDown(result);
    return result;
}

} // namespace stricthost
