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
    const bool unset = out.width == 0 && out.height == 0 && setup.host.options.quirks.clearedOutData;
    if (unset || (out.width == prepared.width && out.height == prepared.height))
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

// Number of rows of a field in a frame of so many rows; the upper field has the first row.
A_long FieldRows(A_long rows, PF_Field field) {
    return field == PF_Field_FRAME ? rows : (rows + (field == PF_Field_UPPER ? 1 : 0)) / 2;
}

// A world as the plug-in receives it: all rows, or those of one field at twice the stride.
PF_LayerDef FieldOf(WorldStore& worlds, World* world, PF_Field field) {
    if (!world)
        return {};
    PF_LayerDef def = world->Def();
    if (field == PF_Field_FRAME)
        return def;
    def.height = FieldRows(def.height, field);
    def.extent_hint.bottom = def.height;
    def.rowbytes *= 2;
    if (field == PF_Field_LOWER && def.height > 0) {
        def.data = reinterpret_cast<PF_PixelPtr>(world->Row(1));
        worlds.AddAlias(*world, def.data);
    }
    return def;
}

// Sends the commands of one frame, or of one field, in their order.
class ClassicFrame {
public:
    ClassicFrame(Instance& instance, const FrameState& frame, PF_Field field = PF_Field_FRAME)
        : m_Instance(instance), m_Host(instance.Host()), m_Frame(frame), m_Field(field),
          m_Prepared(PreparedSize(frame.spec)) {
        m_Prepared.height = FieldRows(m_Prepared.height, field);
    }

    PF_Err SetUp(FrameResult& result) {
        HostCall call(m_Host, PF_Cmd_FRAME_SETUP, &m_Instance);
        Fill(call);
        Describe(call);
        if (!m_Host.options.quirks.clearedOutData) {
            call.out.width = m_Prepared.width;
            call.out.height = m_Prepared.height;
        }
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
        ScopedWorld output(m_Host.worlds,
                           m_Host.Shape(m_Place.size.width, m_Place.size.height, m_Frame.format),
                           "the output of RENDER");
        PrepareOutput(m_Host, m_Frame, *output);
        const PF_Err err = RenderInto(*output, result);
        result.originX = m_Frame.spec.inputX - m_Place.origin.h;
        result.originY = m_Frame.spec.inputY - m_Place.origin.v;
        if (err == PF_Err_NONE)
            TakeOutput(m_Host, m_Frame, *output, result, unwritten);
    }

    // output: a world for the whole frame, of which the plug-in receives its field.
    PF_Err RenderInto(World& output, FrameResult& result) {
        HostCall call(m_Host, PF_Cmd_RENDER, &m_Instance);
        Fill(call);
        const ReadOnlyWorld input(call, CreateInput(call));
        call.params[0].u.ld = FieldOf(m_Host.worlds, input.Get(), m_Field);
        PF_LayerDef def = FieldOf(m_Host.worlds, &output, m_Field);
        const PF_Err err = m_Host.Send(call, &def, nullptr);
        if (call.out.frame_data != m_FrameData)
            call.Report("replaced frame_data");
        CollectOutcome(call, err, result);
        return err;
    }

    void SetDown(FrameResult& result) {
        HostCall call(m_Host, PF_Cmd_FRAME_SETDOWN, &m_Instance);
        Fill(call);
        Describe(call);
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
        call.in.field = m_Field;
        call.in.height = FieldRows(call.in.height, m_Field);
        call.in.output_origin_x = m_Place.origin.h;
        call.in.output_origin_y = m_Place.origin.v;
        call.in.extent_hint = {0, 0, m_Prepared.width, m_Prepared.height};
        call.PassParams(m_Instance.Definitions(call.in));
    }

    void Describe(HostCall& call) const {
        call.params[0].u.ld = Description(call, m_Frame);
        call.params[0].u.ld.height = FieldRows(call.params[0].u.ld.height, m_Field);
    }

    Instance& m_Instance;
    HostCore& m_Host;
    const FrameState& m_Frame;
    PF_Field m_Field;
    Extents m_Prepared;
    OutputPlace m_Place = {};
    PF_Handle m_FrameData = nullptr;
};

// Sends the commands of both fields, which share one output. The output keeps the size that the host
// proposes.
FrameResult RenderFields(Instance& instance, const FrameState& frame, std::vector<std::uint32_t>& unwritten) {
    FrameResult result;
    HostCore& host = instance.Host();
    const Extents size = PreparedSize(frame.spec);
    if (size.width == 0 || size.height == 0)
        return result;
    ScopedWorld output(host.worlds, host.Shape(size.width, size.height, frame.format),
                       "the output of RENDER");
    PrepareOutput(host, frame, *output);
    for (const PF_Field field : {PF_Field_UPPER, PF_Field_LOWER}) {
        if (FieldRows(size.height, field) == 0)
            continue;
        ClassicFrame commands(instance, frame, field);
        if (commands.SetUp(result) == PF_Err_NONE) {
            commands.RenderInto(*output, result);
            commands.SetDown(result);
        }
    }
    if (result.error == PF_Err_NONE)
        TakeOutput(host, frame, *output, result, unwritten);
    return result;
}

} // namespace

// After Effects sends frame set-up once more, without a render, to plug-ins that may enlarge the output.
FrameResult RenderClassic(Instance& instance, const FrameState& frame,
                          std::vector<std::uint32_t>& unwritten) {
    FrameResult result;
    const HostCore& host = instance.Host();
    if (host.options.quirks.fields && host.IsPremiere())
        return RenderFields(instance, frame, unwritten);
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
