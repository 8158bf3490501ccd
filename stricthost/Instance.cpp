#include "stricthost/Instance.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "stricthost/ClassicFrame.h"
#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"
#include "stricthost/SmartFrame.h"
#include "stricthost/StrictHost.h"

namespace stricthost {

Instance::Instance(StrictHost& owner, HostCore& core, A_long width, A_long height)
    : m_Owner(owner), m_Core(core), m_Width(width), m_Height(height) {
    for (const PublishedParam& param : core.params.All()) {
        m_Values.push_back(DefaultValue(param, width, height));
        m_Controls.push_back({param.label, param.uiFlags});
    }
}

Instance::~Instance() = default;

void Instance::RequireLive() const {
    if (m_Deleted)
        throw std::logic_error("the instance was deleted");
}

void Instance::RequireParam(std::size_t index) const {
    if (index == 0 || index >= m_Values.size())
        throw std::invalid_argument("there is no parameter " + std::to_string(index));
}

void Instance::FillIn(PF_InData& in) const {
    in.sequence_data = m_Sequence;
    in.width = m_Width;
    in.height = m_Height;
    in.time_scale = 25;
    in.time_step = in.local_time_step = 1;
    in.downsample_x = in.downsample_y = in.pixel_aspect_ratio = {1, 1};
}

void Instance::Check(const HostCall& call, PF_Err err) {
    m_LastOutFlags = call.out.out_flags;
    if (err != PF_Err_NONE && !m_Sequence)
        m_Deleted = true; // nothing is left to set down
    if (err != PF_Err_NONE)
        throw CommandError(call.command, err, call.Message());
}

// The host disposes of a handle that the plug-in replaced.
void Instance::TakeSequence(const HostCall& call) {
    const PF_Handle next = call.out.sequence_data;
    if (next != m_Sequence)
        m_Core.handles.DisposeOwn(m_Sequence);
    m_Sequence = m_Core.handles.IsLive(next) ? next : nullptr;
}

void Instance::SetUp() {
    HostCall call(m_Core, PF_Cmd_SEQUENCE_SETUP, this);
    FillIn(call.in);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    TakeSequence(call);
    Check(call, err);
}

void Instance::Resetup() {
    HostCall call(m_Core, PF_Cmd_SEQUENCE_RESETUP, this);
    FillIn(call.in);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    TakeSequence(call);
    Check(call, err);
}

void Instance::SetUpFrom(PF_Handle flat) {
    m_Sequence = flat;
    Resetup();
}

void Instance::Flatten() {
    HostCall call(m_Core, PF_Cmd_SEQUENCE_FLATTEN, this);
    FillIn(call.in);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    TakeSequence(call);
    Check(call, err);
}

void Instance::SetDown() {
    HostCall call(m_Core, PF_Cmd_SEQUENCE_SETDOWN, this);
    FillIn(call.in);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    if (m_Sequence && m_Core.handles.IsLive(m_Sequence)) {
        call.Report("did not dispose of sequence_data");
        m_Core.handles.DisposeOwn(m_Sequence);
    }
    m_Sequence = nullptr;
    Check(call, err);
}

Instance& Instance::Duplicate() {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    Flatten();
    const std::vector<char> bytes = m_Core.handles.Bytes(m_Sequence);
    const bool hasData = m_Sequence != nullptr;
    Resetup();
    Instance& copy = m_Owner.AddInstance(m_Width, m_Height);
    copy.m_Values = m_Values;
    copy.m_Controls = m_Controls;
    copy.SetUpFrom(hasData ? m_Core.handles.NewFrom(bytes) : nullptr);
    return copy;
}

std::vector<char> Instance::SaveAndReopen() {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    Flatten();
    const std::vector<char> bytes = m_Core.handles.Bytes(m_Sequence);
    const bool hasData = m_Sequence != nullptr;
    SetDown();
    SetUpFrom(hasData ? m_Core.handles.NewFrom(bytes) : nullptr);
    return bytes;
}

void Instance::Delete() {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    m_Deleted = true;
    SetDown();
}

void Instance::SetValue(std::size_t index, const ParamValue& value) {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    RequireParam(index);
    if (!Fits(m_Core.params[index], value))
        throw std::invalid_argument("the value does not have the kind of parameter " + std::to_string(index) +
                                    ", \"" + m_Core.params[index].label + "\"");
    m_Values[index] = value;
}

const ParamValue& Instance::Value(std::size_t index) const {
    RequireParam(index);
    return m_Values[index];
}

const std::string& Instance::Label(std::size_t index) const {
    RequireParam(index);
    return m_Controls[index].label;
}

bool Instance::IsEnabled(std::size_t index) const {
    RequireParam(index);
    return (m_Controls[index].uiFlags & PF_PUI_DISABLED) == 0;
}

void Instance::SetLayerSize(A_long width, A_long height) {
    const std::lock_guard lock(m_Mutex);
    m_Width = width;
    m_Height = height;
}

PF_ParamDef Instance::Definition(A_long index, const PF_InData& in) const {
    const auto i = static_cast<std::size_t>(index);
    PF_ParamDef def = m_Core.params[i].def;
    def.ui_flags = m_Controls[i].uiFlags;
    std::memset(def.name, 0, sizeof def.name);
    m_Controls[i].label.copy(def.name, sizeof def.name - 1);
    WriteValue(m_Values[i], Factor(in.downsample_x), Factor(in.downsample_y), def);
    return def;
}

std::vector<PF_ParamDef> Instance::Definitions(const PF_InData& in) const {
    std::vector<PF_ParamDef> defs;
    for (std::size_t i = 0; i < m_Values.size(); ++i)
        defs.push_back(Definition(static_cast<A_long>(i), in));
    return defs;
}

LayerValue Instance::Layer(A_long index) const {
    const auto* layer = std::get_if<LayerValue>(&m_Values[static_cast<std::size_t>(index)]);
    return layer ? *layer : nullptr;
}

ColorValue Instance::Color(A_long index) const {
    const auto* color = std::get_if<ColorValue>(&m_Values[static_cast<std::size_t>(index)]);
    return color ? *color : ColorValue();
}

void Instance::SetControlState(A_long index, const PF_ParamDef& def) {
    ControlState& look = m_Controls[static_cast<std::size_t>(index)];
    look.label = {def.name, strnlen(def.name, sizeof def.name - 1)};
    look.uiFlags = def.ui_flags;
}

PF_Err Instance::SendUi(HostCall& call, void* extra) {
    FillIn(call.in);
    call.PassParams(Definitions(call.in));
    const PF_Err err = m_Core.Send(call, nullptr, extra);
    m_LastOutFlags = call.out.out_flags;
    return err;
}

PF_Err Instance::UpdateUI() {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    HostCall call(m_Core, PF_Cmd_UPDATE_PARAMS_UI, this);
    return SendUi(call, nullptr);
}

PF_Err Instance::UserChanged(std::size_t index) {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    RequireParam(index);
    PF_UserChangedParamExtra extra = {};
    extra.param_index = static_cast<PF_ParamIndex>(index);
    HostCall call(m_Core, PF_Cmd_USER_CHANGED_PARAM, this);
    const PF_Err err = SendUi(call, &extra);
    for (std::size_t i = 1; i < call.params.size(); ++i)
        if (call.params[i].uu.change_flags & PF_ChangeFlag_CHANGED_VALUE)
            m_Values[i] = ReadValue(call.params[i], 1.0, 1.0, m_Values[i]);
    return err;
}

FrameResult Instance::RenderOnce(const FrameSpec& spec, std::uint32_t seed,
                                 std::vector<std::uint32_t>& unwritten) {
    const FrameState frame = {spec, FrameFormat(m_Core, spec), seed};
    return m_Core.Smart() ? RenderSmart(*this, frame, unwritten) : RenderClassic(*this, frame, unwritten);
}

// A rendered 8-bit pixel may equal the fill pattern by chance. A pixel therefore counts as unwritten only
// when it still holds the pattern in two renders with different patterns.
FrameResult Instance::Render(const FrameSpec& spec) {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    std::vector<std::uint32_t> unwritten, again, both;
    FrameResult result = RenderOnce(spec, 1, unwritten);
    if (unwritten.empty())
        return result;
    result = RenderOnce(spec, 2, again);
    std::set_intersection(unwritten.begin(), unwritten.end(), again.begin(), again.end(),
                          std::back_inserter(both));
    if (!both.empty() && result.picture.width != 0)
        m_Core.violations.Add("an output pixel was never written, the first at (" +
                              std::to_string(both.front() % result.picture.width) + ", " +
                              std::to_string(both.front() / result.picture.width) + ")");
    return result;
}

} // namespace stricthost
