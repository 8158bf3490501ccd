#include "host/ParameterBridge.h"

#include <string>

#include "engine/FrameLock.h"
#include "engine/IPlugin.h"
#include "host/Geometry.h"
#include "host/HostState.h"
#include "host/HostText.h"
#include "host/Suites.h"
#include "host/WorldPixels.h"
#include "parameters/ParameterTraits.h"

namespace Adapter {

namespace {

// One parameter's value, checked out from the host for the lifetime of this object.
class ParamCheckout {
public:
    ParamCheckout(PF_InData* in, A_long index) : m_In(in) {
        m_Error = in->inter.checkout_param(in->effect_ref, index, in->current_time, in->time_step,
                                           in->time_scale, &m_Def);
    }
    ~ParamCheckout() {
        if (m_Error == PF_Err_NONE)
            m_In->inter.checkin_param(m_In->effect_ref, &m_Def);
    }
    ParamCheckout(const ParamCheckout&) = delete;
    ParamCheckout& operator=(const ParamCheckout&) = delete;

    PF_Err Error() const { return m_Error; }
    PF_ParamDef* Def() { return &m_Def; }

private:
    PF_InData* m_In;
    PF_ParamDef m_Def = {};
    PF_Err m_Error;
};

bool NeedsPixels(Parameter::Type type) {
    return TraitsOf(type).isTexture() || type == Parameter::PATH;
}

bool IsPushed(const Parameter& parameter, bool forRender) {
    return !(parameter.flags & Parameter::NotPublished) && (forRender || !NeedsPixels(parameter.type));
}

// The arguments of a converter: the host's value, the place for the result, and data that some kinds need.
struct Conversion {
    IPlugin& engine;
    PF_InData* in;
    AEGP_SuiteHandler& suites;
    PF_ParamDef& def;
    unsigned engineIndex;
    unsigned flags; // of the engine parameter
    Parameter::Value& value;
};

// Factors from the host's down-sampled coordinates to the full resolution. The horizontal one also undoes the
// pixel aspect ratio.
struct FullResolution {
    // The order of the operations is part of the interface: another one gives other rounding.
    static float Undone(const PF_RationalScale& scale, float aspect) {
        const bool meaningful = scale.num != 0 && scale.den != 0;
        return meaningful ? static_cast<float>(scale.den) * aspect / static_cast<float>(scale.num) : aspect;
    }

    explicit FullResolution(const PF_InData& in)
        : aspect(Ratio(in.pixel_aspect_ratio)), x(Undone(in.downsample_x, aspect)),
          y(Undone(in.downsample_y, 1.0f)) {}
    float aspect;
    float x;
    float y;
};

void ConvertLayer(Conversion& c) {
    PF_LayerDef& layer = c.def.u.ld;
    if (!layer.data)
        return;
    void* pixels = nullptr;
    const int bits = GetPixelData(c.in, &pixels, &layer);
    FrameLock lock(c.engine);
    if (!lock)
        return;
    c.engine.grabIntoTexture(c.engineIndex, pixels, Extent(layer.width), Extent(layer.height),
                             static_cast<unsigned>(bits), layer.rowbytes);
    lock.release();
    c.value.SetInt(0, static_cast<std::int32_t>(c.engineIndex) + 1);
}

void ConvertAngle(Conversion& c) {
    c.value.SetFloat(0, static_cast<float>(c.def.u.ad.value) * (1.0f / 65536.0f));
}

void ConvertCheckbox(Conversion& c) {
    c.value.SetInt(0, c.def.u.bd.value);
}

void ConvertPopup(Conversion& c) {
    c.value.SetInt(0, c.def.u.pd.value);
}

void ConvertColor(Conversion& c) {
    PF_PixelFloat color = {};
    c.suites.ColorParamSuite1()->PF_GetFloatingPointColorFromColorDef(c.in->effect_ref, &c.def, &color);
    c.value.SetFloat(0, color.red);
    c.value.SetFloat(1, color.green);
    c.value.SetFloat(2, color.blue);
    c.value.SetFloat(3, color.alpha);
}

void ConvertPoint2D(Conversion& c) {
    float x = static_cast<float>(c.def.u.td.x_value) / 65536.0f;
    float y = static_cast<float>(c.def.u.td.y_value) / 65536.0f;
    if (c.flags & Parameter::RemoveScale) {
        const FullResolution full(*c.in);
        x *= full.x;
        y *= full.y;
    }
    c.value.SetFloat(0, x);
    c.value.SetFloat(1, y);
}

void ConvertFloat(Conversion& c) {
    const FullResolution full(*c.in);
    float x = static_cast<float>(c.def.u.fs_d.value);
    if (c.flags & Parameter::ScaleByWidth)
        x /= full.x / full.aspect;
    if (c.flags & Parameter::ScaleByHeight)
        x /= full.y;
    c.value.SetFloat(0, x);
}

void ConvertPoint3D(Conversion& c) {
    c.value.SetFloat(0, static_cast<float>(c.def.u.point3d_d.x_value));
    c.value.SetFloat(1, static_cast<float>(c.def.u.point3d_d.y_value));
    c.value.SetFloat(2, static_cast<float>(c.def.u.point3d_d.z_value));
}

// Kinds that are not listed have the value 0.
struct ConversionRow {
    PF_ParamType hostType;
    void (*convert)(Conversion& conversion);
};
constexpr ConversionRow s_Conversions[] = {
    {PF_Param_LAYER, ConvertLayer},        {PF_Param_ANGLE, ConvertAngle},
    {PF_Param_CHECKBOX, ConvertCheckbox},  {PF_Param_POPUP, ConvertPopup},
    {PF_Param_COLOR, ConvertColor},        {PF_Param_POINT, ConvertPoint2D},
    {PF_Param_FLOAT_SLIDER, ConvertFloat}, {PF_Param_POINT_3D, ConvertPoint3D},
};

void SetName(PF_ParamDef& def, const std::string& label) {
    const std::string name = BoundedText(label, PF_MAX_EFFECT_PARAM_NAME_LEN);
    name.copy(def.PF_DEF_NAME, name.size());
    def.PF_DEF_NAME[name.size()] = '\0';
}

// A copy of the host's definition with the engine's label and enabled state.
PF_ParamDef WithEngineState(const PF_ParamDef& shown, const Parameter& parameter) {
    PF_ParamDef def = shown;
    def.ui_flags &= ~PF_PUI_DISABLED;
    if (parameter.flags & Parameter::Disabled)
        def.ui_flags |= PF_PUI_DISABLED;
    SetName(def, parameter.label);
    return def;
}

} // namespace

void UpdateParametersValues(CommandCall& call, bool forRender) {
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    const unsigned count = call.engine.getNumParams();
    for (unsigned i = 0; i < count; ++i) {
        A_long hostIndex = 0;
        if (!IsPushed(call.engine.getParamDesc(i), forRender) || !FindHostIndex(*call.in, i, hostIndex))
            continue;
        ParamCheckout checkout(call.in, hostIndex);
        if (checkout.Error() != PF_Err_NONE)
            return;
        UpdateParameterValue(call, suites, *checkout.Def(), hostIndex);
    }
}

void UpdateParameterValue(CommandCall& call, AEGP_SuiteHandler& suites, PF_ParamDef& def, int hostIndex) {
    const auto found = s_MapAEParam2Plugin.find(static_cast<A_u_long>(hostIndex));
    if (found == s_MapAEParam2Plugin.end())
        return;
    const unsigned engineIndex = found->second;
    const unsigned flags = call.engine.getParamDesc(engineIndex).flags;
    Parameter::Value value;
    Conversion conversion{call.engine, call.in, suites, def, engineIndex, flags, value};
    for (const ConversionRow& row : s_Conversions)
        if (row.hostType == def.param_type)
            row.convert(conversion);
    call.engine.setParam(engineIndex, value);
}

void UpdateParametersUI(CommandCall& call, PF_ParamDef** params) {
    const PF_InData& in = *call.in;
    // PF_UpdateParamUI is the first entry under each of the three numbers. A host without the suite keeps
    // showing the controls as they were published.
    ScopedSuite<PF_ParamUtilsSuite3> suite(
        in, {{kPFParamUtilsSuite, 3}, {kPFParamUtilsSuite, 2}, {kPFParamUtilsSuite, 1}});
    bool hostTakesUpdates = params && suite;
    const unsigned count = call.engine.getNumParams();
    for (unsigned i = 0; i < count; ++i) {
        const Parameter& parameter = call.engine.getParamDesc(i);
        if (parameter.flags & Parameter::NotPublished)
            continue;
        const auto hostIndex = static_cast<A_long>(s_MapPlugin2AEParam[i]);
        if (hostIndex == 0)
            continue;
        A_long readable = 0;
        if (hostTakesUpdates && FindHostIndex(in, i, readable) && params[readable]) {
            const PF_ParamDef def = WithEngineState(*params[readable], parameter);
            hostTakesUpdates = suite->PF_UpdateParamUI(in.effect_ref, readable, &def) == PF_Err_NONE;
        }
        s_MapAEParam2Plugin[static_cast<A_u_long>(hostIndex)] = i;
    }
    call.out->out_flags |= PF_OutFlag_REFRESH_UI;
}

} // namespace Adapter
