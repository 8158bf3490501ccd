#include "stricthost/Instance.h"

#include <algorithm>
#include <cstring>
#include <future>
#include <iterator>

#include "stricthost/ClassicFrame.h"
#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"
#include "stricthost/SmartFrame.h"
#include "stricthost/StrictHost.h"

namespace stricthost {

namespace {

// Named by newer versions of the interface.
constexpr PF_InFlags s_RenderOnly = 1;          // PF_InFlag_PROJECT_IS_RENDER_ONLY
constexpr PF_ParamUIFlags s_Invisible = 1 << 9; // PF_PUI_INVISIBLE

} // namespace

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
void Instance::TakeSequence(const HostCall& call, PF_Handle& data) {
    const PF_Handle next = call.out.sequence_data;
    if (next != data)
        m_Core.handles.DisposeOwn(data);
    data = m_Core.handles.IsLive(next) ? next : nullptr;
}

void Instance::SetUp() {
    HostCall call(m_Core, PF_Cmd_SEQUENCE_SETUP, this);
    FillIn(call.in);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    TakeSequence(call, m_Sequence);
    Check(call, err);
}

void Instance::Resetup(PF_Handle& data, PF_Handle from, PF_InFlags flags) {
    data = from;
    HostCall call(m_Core, PF_Cmd_SEQUENCE_RESETUP, this);
    FillIn(call.in);
    call.in.sequence_data = from;
    call.in.in_flags = flags;
    const auto send = [&] { return m_Core.Send(call, nullptr, nullptr); };
    const PF_Err err =
        m_Core.options.quirks.resetupThread ? std::async(std::launch::async, send).get() : send();
    TakeSequence(call, data);
    Check(call, err);
}

void Instance::Flatten() {
    HostCall call(m_Core, PF_Cmd_SEQUENCE_FLATTEN, this);
    FillIn(call.in);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    TakeSequence(call, m_Sequence);
    Check(call, err);
}

// The host owns the handle that the plug-in returns; the live one stays.
std::vector<char> Instance::FlattenedCopy() {
    HostCall call(m_Core, PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, this);
    FillIn(call.in);
    call.flattens = true;
    call.Protect(m_Sequence);
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    const PF_Handle flat = call.out.sequence_data;
    if (err == PF_Err_NONE && (!flat || flat == m_Sequence))
        call.Report("returned no new handle with a flattened copy");
    std::vector<char> bytes = m_Core.handles.Bytes(flat);
    if (flat != m_Sequence)
        m_Core.handles.DisposeOwn(flat);
    Check(call, err);
    return bytes;
}

void Instance::SetDownData(PF_Handle& data) {
    HostCall call(m_Core, PF_Cmd_SEQUENCE_SETDOWN, this);
    FillIn(call.in);
    call.in.sequence_data = data;
    const PF_Err err = m_Core.Send(call, nullptr, nullptr);
    if (data && m_Core.handles.IsLive(data)) {
        call.Report("did not dispose of sequence_data");
        m_Core.handles.DisposeOwn(data);
    }
    data = nullptr;
    Check(call, err);
}

void Instance::SetDown() {
    if (m_HasRenderCopy)
        SetDownData(m_RenderSequence);
    m_HasRenderCopy = false;
    SetDownData(m_Sequence);
}

std::optional<std::vector<char>> Instance::BytesForCopy() {
    if (m_Core.options.quirks.nullResetup)
        return std::nullopt;
    if (m_Core.CopiesBytes() && m_Sequence)
        return m_Core.handles.Bytes(m_Sequence);
    if (m_Core.options.quirks.getFlattened && m_Sequence &&
        (m_Core.outFlags2 & PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA))
        return FlattenedCopy();
    Flatten();
    std::optional<std::vector<char>> bytes;
    if (m_Sequence)
        bytes = m_Core.handles.Bytes(m_Sequence);
    Resetup(m_Sequence, m_Sequence);
    return bytes;
}

Instance& Instance::Duplicate() {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    const auto bytes = BytesForCopy();
    Instance& copy = m_Owner.AddInstance(m_Width, m_Height);
    copy.m_Values = m_Values;
    copy.m_Animations = m_Animations;
    copy.m_Controls = m_Controls;
    const PF_Handle data = bytes ? m_Core.handles.NewFrom(*bytes) : nullptr;
    if (data && m_Core.CopiesBytes())
        copy.m_Sequence = data; // in use as it is, without a command
    else
        copy.Resetup(copy.m_Sequence, data);
    return copy;
}

// A saved project holds flattened data, whatever the plug-in's flags, unless the host copies bytes.
std::vector<char> Instance::SaveAndReopen() {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    std::optional<std::vector<char>> bytes;
    if (m_Core.options.quirks.nullResetup || m_Core.CopiesBytes() || m_Core.options.quirks.getFlattened) {
        bytes = BytesForCopy();
    } else {
        Flatten();
        if (m_Sequence)
            bytes = m_Core.handles.Bytes(m_Sequence);
    }
    SetDown();
    Resetup(m_Sequence, bytes ? m_Core.handles.NewFrom(*bytes) : nullptr);
    return bytes.value_or(std::vector<char>());
}

PF_Handle Instance::RenderData() const {
    return m_Core.WithholdsData() ? nullptr : SharedData();
}

void Instance::MakeRenderCopy() {
    if (m_HasRenderCopy || !m_Core.options.quirks.renderCopies || m_Core.IsPremiere())
        return;
    m_HasRenderCopy = true;
    Resetup(m_RenderSequence, nullptr, s_RenderOnly);
}

void Instance::Delete() {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    m_Deleted = true;
    if (m_Core.options.quirks.flatSetdown)
        Flatten();
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
    m_Animations.erase(index);
}

void Instance::Animate(std::size_t index, Animation animation) {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    RequireParam(index);
    m_Animations[index] = std::move(animation);
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

PF_ParamDef Instance::Definition(A_long index, const PF_InData& in, HostTime time) const {
    const auto i = static_cast<std::size_t>(index);
    PF_ParamDef def = m_Core.params[i].def;
    def.ui_flags = m_Controls[i].uiFlags;
    if (m_Core.options.quirks.hiddenParameters && i > 0)
        def.ui_flags |= PF_PUI_DISABLED | s_Invisible;
    std::memset(def.PF_DEF_NAME, 0, sizeof def.PF_DEF_NAME);
    m_Controls[i].label.copy(def.PF_DEF_NAME, sizeof def.PF_DEF_NAME - 1);
    WriteValue(ValueAt(index, time), Factor(in.downsample_x), Factor(in.downsample_y), def);
    return def;
}

std::vector<PF_ParamDef> Instance::Definitions(const PF_InData& in) const {
    std::vector<PF_ParamDef> defs;
    for (std::size_t i = 0; i < m_Values.size(); ++i)
        defs.push_back(Definition(static_cast<A_long>(i), in, {in.current_time, in.time_scale}));
    return defs;
}

ParamValue Instance::ValueAt(A_long index, HostTime time) const {
    const auto i = static_cast<std::size_t>(index);
    const auto animation = m_Animations.find(i);
    if (animation == m_Animations.end())
        return m_Values[i];
    return animation->second(time.scale ? static_cast<double>(time.value) / time.scale : 0.0);
}

LayerValue Instance::LayerAt(A_long index, HostTime time) const {
    const ParamValue value = ValueAt(index, time);
    const auto* layer = std::get_if<LayerValue>(&value);
    return layer ? *layer : nullptr;
}

ColorValue Instance::ColorAt(A_long index, HostTime time) const {
    const ParamValue value = ValueAt(index, time);
    const auto* color = std::get_if<ColorValue>(&value);
    return color ? *color : ColorValue();
}

void Instance::SetControlState(A_long index, const PF_ParamDef& def) {
    ControlState& look = m_Controls[static_cast<std::size_t>(index)];
    look.label = {def.PF_DEF_NAME, strnlen(def.PF_DEF_NAME, sizeof def.PF_DEF_NAME - 1)};
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
    m_Core.StartFrame();
    const FrameState frame = {spec, FrameFormat(m_Core, spec), seed};
    return m_Core.Smart() ? RenderSmart(*this, frame, unwritten) : RenderClassic(*this, frame, unwritten);
}

// A rendered 8-bit pixel may equal the fill pattern by chance. A pixel therefore counts as unwritten only
// when it still holds the pattern in two renders with different patterns.
FrameResult Instance::Render(const FrameSpec& spec) {
    const std::lock_guard lock(m_Mutex);
    RequireLive();
    MakeRenderCopy();
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
