#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "engine/IPlugin.h"
#include "host/Commands.h"
#include "host/HostParamType.h"
#include "host/HostState.h"
#include "host/HostText.h"
#include "host/Suites.h"

#include "AE_EffectUI.h" // needs the headers above

namespace Adapter {

namespace {

constexpr PF_ParamFlags s_Supervised = PF_ParamFlag_SUPERVISE;
constexpr PF_ParamFlags s_SupervisedCollapsed = PF_ParamFlag_SUPERVISE | PF_ParamFlag_START_COLLAPSED;

// The low 32 bits of the integer part; 0 for a value outside the range of 64-bit integers.
std::int32_t TruncatedTo32Bits(double value) {
    constexpr double limit = 9.0e18;
    if (!(value > -limit && value < limit))
        return 0;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(value)));
}

// 16.16 fixed point, rounded half away from zero.
std::int32_t RoundedFixed(float value) {
    return TruncatedTo32Bits(value * 65536.0 + (value < 0 ? -0.5 : 0.5));
}

void FillFloat(const Parameter& source, PF_ParamDef& def) {
    PF_FloatSliderDef& slider = def.u.fs_d;
    slider.value = source.value.Float(0);
    slider.dephault = source.value.Float(0);
    slider.valid_min = slider.slider_min = source.min.Float(0);
    slider.valid_max = slider.slider_max = source.max.Float(0);
    slider.precision =
        static_cast<A_short>(static_cast<std::int32_t>(source.flags) >> Parameter::PrecisionShift);
    slider.curve_tolerance = AEFX_AUDIO_DEFAULT_CURVE_TOLERANCE;
}

// Deliberate: the third default is the second component, because saved projects depend on it.
void FillPoint3D(const Parameter& source, PF_ParamDef& def) {
    PF_Point3DDef& point = def.u.point3d_d;
    point.x_value = point.x_dephault = source.value.Float(0);
    point.y_value = point.y_dephault = source.value.Float(1);
    point.z_value = point.z_dephault = source.value.Float(1);
}

// Deliberate: components are not scaled, so 1.0 becomes 1 of 255.
void FillColor(const Parameter& source, PF_ParamDef& def) {
    const auto channel = [&](unsigned index) {
        return static_cast<A_u_char>(TruncatedTo32Bits(source.value.Float(index)));
    };
    PF_ColorDef& color = def.u.cd;
    color.value.alpha = channel(3);
    color.value.red = channel(0);
    color.value.green = channel(1);
    color.value.blue = channel(2);
    color.dephault = color.value;
}

void FillLayer(const Parameter&, PF_ParamDef& def) {
    def.u.ld.dephault = PF_LayerDefault_NONE;
}

// Deliberate: the default is shifted once more than 16.16 needs, because saved projects depend on it.
void FillPoint2D(const Parameter& source, PF_ParamDef& def) {
    const auto shifted = [](float value) {
        return static_cast<PF_Fixed>(static_cast<std::uint32_t>(RoundedFixed(value)) << 16);
    };
    PF_PointDef& point = def.u.td;
    point.x_value = point.x_dephault = shifted(source.value.Float(0));
    point.y_value = point.y_dephault = shifted(source.value.Float(1));
}

void FillChoices(const Parameter& source, PF_PopupDef& popup) {
    popup.num_choices = static_cast<A_short>(source.choiceCount);
    popup.u.PF_DEF_NAMESPTR = source.choices.c_str();
}

void FillTexture(const Parameter& source, PF_ParamDef& def) {
    FillChoices(source, def.u.pd);
}

void FillPath(const Parameter&, PF_ParamDef& def) {
    def.uu.id -= 2; // deliberate: only paths have an id equal to their index
}

void FillBool(const Parameter& source, PF_ParamDef& def) {
    PF_CheckBoxDef& box = def.u.bd;
    box.value = source.value.Int(0);
    box.dephault = static_cast<PF_Boolean>(source.value.Int(0) & 0xFF);
    box.u.PF_DEF_NAMEPTR = "";
}

void FillPopup(const Parameter& source, PF_ParamDef& def) {
    def.u.pd.value = def.u.pd.dephault = static_cast<A_short>(source.value.Int(0));
    FillChoices(source, def.u.pd);
}

void FillNothing(const Parameter&, PF_ParamDef&) {}

void FillAngle(const Parameter& source, PF_ParamDef& def) {
    def.u.ad.value = def.u.ad.dephault = TruncatedTo32Bits(source.value.Float(0) * 65536.0);
}

// The host parameter for each type of engine parameter.
struct PublicationRow {
    Parameter::Type engineType;
    PF_ParamFlags flags;
    void (*fill)(const Parameter& source, PF_ParamDef& def);
    A_long* firstIndex; // where the first index of the kind is stored; null when it is not needed
};
constexpr PublicationRow s_Publications[] = {
    {Parameter::FLOAT, s_SupervisedCollapsed, FillFloat, &s_ParamsStart},
    {Parameter::POINT, 0, FillPoint3D, &s_PointsStart},
    {Parameter::COLOR, s_SupervisedCollapsed, FillColor, &s_ColorsStart},
    {Parameter::LAYER, s_Supervised, FillLayer, &s_LayersStart},
    {Parameter::POINT2D, s_SupervisedCollapsed, FillPoint2D, &s_Points2Start},
    {Parameter::TEXTURE, s_Supervised, FillTexture, &s_TextureStart},
    {Parameter::PATH, s_Supervised, FillPath, &s_PathsStart},
    {Parameter::BOOL, s_Supervised, FillBool, &s_BoolsStart},
    {Parameter::POPUP, s_Supervised, FillPopup, &s_PopupsStart},
    {Parameter::GROUP_START, 0, FillNothing, nullptr},
    {Parameter::GROUP_END, 0, FillNothing, nullptr},
    {Parameter::ANGLE, s_SupervisedCollapsed, FillAngle, &s_AngleStart},
};

const PublicationRow* FindPublication(Parameter::Type type) {
    for (const PublicationRow& row : s_Publications)
        if (row.engineType == type)
            return &row;
    return nullptr;
}

PF_ParamType HostType(Parameter::Type type) {
    const ParameterTraits::Control control = TraitsOf(type).control;
    return std::find_if(std::begin(s_HostParamTypes), std::prev(std::end(s_HostParamTypes)),
                        [&](const HostParamType& row) { return row.control == control; })
        ->code;
}

PF_Err AddToHost(CommandCall& call, const PublicationRow& row, const Parameter& source) {
    PF_ParamDef def = {};
    def.uu.id = call.out->num_params + 2;
    def.param_type = HostType(row.engineType);
    def.flags = row.flags;
    if (row.engineType != Parameter::GROUP_END)
        call.in->utils->ansi.strcpy(def.PF_DEF_NAME,
                                    BoundedText(source.label, PF_MAX_EFFECT_PARAM_NAME_LEN).c_str());
    row.fill(source, def);
    const PF_Err err = call.in->inter.add_param(call.in->effect_ref, -1, &def);
    if (err == PF_Err_NONE)
        ++s_HostParamCount;
    // Deliberate: hosts without masks refuse paths, and the effect works without them.
    return row.engineType == Parameter::PATH ? static_cast<PF_Err>(PF_Err_NONE) : err;
}

// Deliberate: a parameter of an unknown type is not shown but still takes an index.
PF_Err Publish(CommandCall& call, A_u_long engineIndex) {
    const Parameter& source = call.engine.getParamDesc(engineIndex);
    if (source.flags & Parameter::NotPublished)
        return PF_Err_NONE;
    const PublicationRow* row = FindPublication(source.type);
    if (row) {
        const PF_Err err = AddToHost(call, *row, source);
        if (err != PF_Err_NONE)
            return err;
        if (row->firstIndex && *row->firstIndex == 0)
            *row->firstIndex = call.out->num_params;
    }
    s_MapPlugin2AEParam[engineIndex] = static_cast<A_u_long>(call.out->num_params);
    ++call.out->num_params;
    return PF_Err_NONE;
}

PF_Err BlankOptionsButton(CommandCall& call) {
    RequiredSuite<PF_EffectUISuite1> suite(*call.in, {kPFEffectUISuite, kPFEffectUISuiteVersion1});
    return suite->PF_SetOptionsButtonName(call.in->effect_ref, " ");
}

PF_Err RegisterCustomUi(CommandCall& call) {
    PF_CustomUIInfo info = {};
    info.events = PF_CustomEFlag_EFFECT;
    return call.in->inter.register_ui(call.in->effect_ref, &info);
}

} // namespace

PF_Err ParamsSetup(CommandCall& call) {
    call.out->num_params = 1;
    s_HostParamCount = 1;
    s_MapPlugin2AEParam.clear();
    for (A_u_long i = 0; i < call.engine.getNumParams(); ++i)
        if (const PF_Err err = Publish(call, i); err != PF_Err_NONE)
            return err;
    if (!IsPremiere(*call.in))
        if (const PF_Err err = BlankOptionsButton(call); err != PF_Err_NONE)
            return err;
    return RegisterCustomUi(call);
}

} // namespace Adapter
