#include <cstring>

#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/RenderCommands.h"

namespace stricthost {

namespace {

struct OutputPlace {
    Extents size;
    PF_Point origin; // of the input inside the output
    bool refused;
};

Extents PreparedSize(const FrameRequest& request) {
    const PF_LRect input = InputRect(request);
    return {request.outputWidth ? request.outputWidth : input.right - input.left,
            request.outputHeight ? request.outputHeight : input.bottom - input.top};
}

bool MayResize(PF_OutFlags flags, A_long from, A_long to) {
    return to == from || (flags & (to > from ? PF_OutFlag_I_EXPAND_BUFFER : PF_OutFlag_I_SHRINK_BUFFER)) != 0;
}

// Without the flags for it, a plug-in's choice of size is ignored, as hosts do.
OutputPlace ChooseOutput(const Call& setup, Extents prepared) {
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

// The input as it is described while its pixels are not to be read.
PF_LayerDef Description(const Call& call, const FrameState& frame) {
    const PF_LRect input = InputRect(frame.request);
    PF_LayerDef def = {};
    def.width = input.right - input.left;
    def.height = input.bottom - input.top;
    def.rowbytes = static_cast<A_long>(static_cast<unsigned>(def.width) *
                                           (frame.request.input ? frame.request.input->depth : 0) / 2 +
                                       call.host.options.rowPadding);
    def.extent_hint = {0, 0, def.width, def.height};
    def.pix_aspect_ratio = frame.request.pixelAspect;
    return def;
}

// The commands of one frame, in their order.
class ClassicFrame {
public:
    ClassicFrame(Instance& instance, const FrameState& frame)
        : m_Instance(instance), m_Host(instance.Host()), m_Frame(frame),
          m_Prepared(PreparedSize(frame.request)) {}

    PF_Err SetUp(FrameResult& result) {
        Call call(m_Host, PF_Cmd_FRAME_SETUP, &m_Instance);
        Fill(call);
        call.params[0].u.ld = Description(call, m_Frame);
        call.out.width = m_Prepared.width;
        call.out.height = m_Prepared.height;
        const PF_Err err = m_Host.Send(call, nullptr, nullptr);
        m_FrameData = call.out.frame_data;
        m_Place = ChooseOutput(call, m_Prepared);
        result.resizeRefused = m_Place.refused;
        Collect(call, err, result);
        return err;
    }

    void Render(FrameResult& result, std::vector<std::uint32_t>& unwritten) {
        if (m_Place.size.width == 0 || m_Place.size.height == 0)
            return;
        Call call(m_Host, PF_Cmd_RENDER, &m_Instance);
        Fill(call);
        const ReadOnlyWorld input(call, CreateInput(call));
        call.params[0].u.ld = input.Get() ? input.Get()->Def() : PF_LayerDef();
        ScopedWorld output(m_Host.worlds,
                           {static_cast<unsigned>(m_Place.size.width),
                            static_cast<unsigned>(m_Place.size.height), m_Frame.format,
                            m_Host.options.rowPadding},
                           "the output of RENDER");
        ClearOutput(*output, m_Frame, m_Host.options.checkPixels);
        output->Def().pix_aspect_ratio = m_Frame.request.pixelAspect;
        output->Def().world_flags |= PF_WorldFlag_WRITEABLE;
        const PF_Err err = Send(call, *output);
        result.originX = m_Frame.request.inputX - m_Place.origin.h;
        result.originY = m_Frame.request.inputY - m_Place.origin.v;
        Collect(call, err, result);
        if (err == PF_Err_NONE)
            Deliver(*output, m_Frame, m_Host.options.checkPixels, result, unwritten);
    }

    void SetDown(FrameResult& result) {
        Call call(m_Host, PF_Cmd_FRAME_SETDOWN, &m_Instance);
        Fill(call);
        call.params[0].u.ld = Description(call, m_Frame);
        const PF_Err err = m_Host.Send(call, nullptr, nullptr);
        Collect(call, err, result);
        if (m_FrameData && m_Host.handles.IsLive(m_FrameData)) {
            call.Report("did not dispose of frame_data");
            m_Host.handles.DisposeOwn(m_FrameData);
        }
        m_FrameData = nullptr;
    }

private:
    void Fill(Call& call) {
        FillFrame(call, m_Frame);
        call.in.frame_data = m_FrameData;
        call.in.output_origin_x = m_Place.origin.h;
        call.in.output_origin_y = m_Place.origin.v;
        call.in.extent_hint = {0, 0, m_Prepared.width, m_Prepared.height};
        call.PassParams(m_Instance.Definitions(call.in));
    }

    PF_Err Send(Call& call, World& output) {
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

double Factor(const PF_RationalScale& scale) {
    return scale.den && scale.num ? static_cast<double>(scale.num) / scale.den : 1.0;
}

void Collect(const Call& call, PF_Err err, FrameResult& result) {
    if (result.error == PF_Err_NONE)
        result.error = err;
    result.outFlags |= call.out.out_flags;
    if (result.message.empty())
        result.message.assign(call.out.return_msg, strnlen(call.out.return_msg, sizeof call.out.return_msg));
}

void ClearOutput(World& output, const FrameState& frame, bool checkPixels) {
    if (checkPixels)
        output.FillWithPattern(frame.patternSeed);
    else
        output.Clear();
}

void Deliver(const World& output, const FrameState& frame, bool checkPixels, FrameResult& result,
             std::vector<std::uint32_t>& unwritten) {
    result.picture = output.ToPicture();
    if (checkPixels)
        unwritten = output.FindPattern(frame.patternSeed);
}

ReadOnlyWorld::ReadOnlyWorld(Call& call, World* world)
    : m_Call(call), m_World(world),
      m_Checksum(world && call.host.options.checkPixels ? world->Checksum() : 0) {}

ReadOnlyWorld::~ReadOnlyWorld() {
    if (!m_World)
        return;
    if (m_Call.host.options.checkPixels && m_World->Checksum() != m_Checksum)
        m_Call.Report("wrote into its input");
    m_Call.host.worlds.Retire(*m_World);
}

// Plug-ins that may change the output's size are asked for it once more than they render.
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
