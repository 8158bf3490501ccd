#include "engine/IPlugin.h"
#include "host/CommandGuard.h"
#include "host/HostState.h"
#include "host/ParameterBridge.h"
#include "host/PixelData.h"
#include "host/Scaling.h"

namespace Adapter {

namespace {

// What a converter may need besides the host's value.
struct Conversion {
    AEGP_SuiteHandler& suites;
    PF_InData* in;
    PF_ParamDef& def;
    unsigned engineIndex;
    unsigned flags; // the engine parameter's
    IPlugin& engine;
    Parameter::Value& value;
};

// Factors that undo the host's down-sampling and, across, the pixel aspect.
struct Undo {
    explicit Undo(const PF_InData& in)
        : aspect(Ratio(in.pixel_aspect_ratio)), across(aspect / Ratio(in.downsample_x)),
          down(1.0f / Ratio(in.downsample_y)) {}
    float aspect;
    float across;
    float down;
};

void ConvertLayer(Conversion& c) {
    PF_LayerDef& layer = c.def.u.ld;
    if (!layer.data)
        return;
    void* pixels = nullptr;
    const int bits = GetPixelData(c.in, &pixels, &layer);
    FrameLock lock;
    if (!lock)
        return;
    c.engine.grabIntoTexture(c.engineIndex, pixels, Extent(layer.width), Extent(layer.height),
                             static_cast<unsigned>(bits), layer.rowbytes);
    lock.Release();
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
        const Undo undo(*c.in);
        x *= undo.across;
        y *= undo.down;
    }
    c.value.SetFloat(0, x);
    c.value.SetFloat(1, y);
}

void ConvertFloat(Conversion& c) {
    const Undo undo(*c.in);
    float x = static_cast<float>(c.def.u.fs_d.value);
    if (c.flags & Parameter::ScaleByWidth)
        x /= undo.across / undo.aspect;
    if (c.flags & Parameter::ScaleByHeight)
        x /= undo.down;
    c.value.SetFloat(0, x);
}

void ConvertPoint3D(Conversion& c) {
    c.value.SetFloat(0, static_cast<float>(c.def.u.point3d_d.x_value));
    c.value.SetFloat(1, static_cast<float>(c.def.u.point3d_d.y_value));
    c.value.SetFloat(2, static_cast<float>(c.def.u.point3d_d.z_value));
}

// Kinds that are not listed have the value zero.
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

} // namespace

void UpdateParameterValue(AEGP_SuiteHandler& suites, PF_InData* in, PF_OutData*, PF_ParamDef* def,
                          int hostIndex) {
    const auto found = s_MapAEParam2Plugin.find(static_cast<A_u_long>(hostIndex));
    if (found == s_MapAEParam2Plugin.end())
        return;
    IPlugin& engine = *GetPlugin();
    const unsigned engineIndex = found->second;
    Parameter::Value value;
    Conversion conversion{suites, in,   *def, engineIndex, engine.getParamDesc(engineIndex).flags,
                          engine, value};
    for (const ConversionRow& row : s_Conversions)
        if (row.hostType == def->param_type)
            row.convert(conversion);
    engine.setParam(engineIndex, value);
}

} // namespace Adapter
