#include "stricthost/ParamTable.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace stricthost {

namespace {

constexpr double s_Fixed = 65536.0;

PF_Fixed ToFixed(double value) {
    return static_cast<PF_Fixed>(std::lround(std::clamp(value * s_Fixed, -2147483648.0, 2147483647.0)));
}

// A default in 16.16 percent of a length; hosts take -600 to 600 percent.
double PercentOf(PF_Fixed percent, double length) {
    return std::clamp(percent / s_Fixed, -600.0, 600.0) / 100.0 * length;
}

A_u_char ToByte(float channel) {
    return static_cast<A_u_char>(std::lround(std::clamp(channel, 0.0f, 1.0f) * 255.0f));
}

ColorValue FromPixel(const PF_Pixel& pixel) {
    return ColorValue::FromBytes(pixel.red, pixel.green, pixel.blue, pixel.alpha);
}

using Def = PF_ParamDef;
using Value = ParamValue;

// How each kind is kept. Kinds that are not listed are refused.
struct KindRow {
    PF_ParamType type;
    std::size_t alternative; // of ParamValue
    Value (*dephault)(const Def& def, double width, double height);
    void (*write)(const Value& value, double scaleX, double scaleY, Def& def);
    Value (*read)(const Def& def, double scaleX, double scaleY); // null: plug-ins cannot change it
};

const KindRow s_Kinds[] = {
    {PF_Param_FLOAT_SLIDER, 1,
     [](const Def& def, double, double) -> Value { return double{def.u.fs_d.dephault}; },
     [](const Value& value, double, double, Def& def) { def.u.fs_d.value = std::get<double>(value); },
     [](const Def& def, double, double) -> Value { return def.u.fs_d.value; }},
    {PF_Param_ANGLE, 1, [](const Def& def, double, double) -> Value { return def.u.ad.dephault / s_Fixed; },
     [](const Value& value, double, double, Def& def) { def.u.ad.value = ToFixed(std::get<double>(value)); },
     [](const Def& def, double, double) -> Value { return def.u.ad.value / s_Fixed; }},
    {PF_Param_CHECKBOX, 2, [](const Def& def, double, double) -> Value { return int{def.u.bd.dephault}; },
     [](const Value& value, double, double, Def& def) { def.u.bd.value = std::get<int>(value); },
     [](const Def& def, double, double) -> Value { return int{def.u.bd.value}; }},
    {PF_Param_POPUP, 2, [](const Def& def, double, double) -> Value { return int{def.u.pd.dephault}; },
     [](const Value& value, double, double, Def& def) { def.u.pd.value = std::get<int>(value); },
     [](const Def& def, double, double) -> Value { return int{def.u.pd.value}; }},
    {PF_Param_PATH, 2, [](const Def&, double, double) -> Value { return 0; },
     [](const Value& value, double, double, Def& def) {
         def.u.path_d.path_id = static_cast<PF_PathID>(std::get<int>(value));
     },
     nullptr},
    {PF_Param_POINT, 3,
     [](const Def& def, double width, double height) -> Value {
         return PointValue{PercentOf(def.u.td.x_dephault, width), PercentOf(def.u.td.y_dephault, height)};
     },
     [](const Value& value, double scaleX, double scaleY, Def& def) {
         const auto& point = std::get<PointValue>(value);
         def.u.td.x_value = ToFixed(point.x * scaleX);
         def.u.td.y_value = ToFixed(point.y * scaleY);
     },
     [](const Def& def, double scaleX, double scaleY) -> Value {
         return PointValue{def.u.td.x_value / s_Fixed / scaleX, def.u.td.y_value / s_Fixed / scaleY};
     }},
    {PF_Param_POINT_3D, 4,
     [](const Def& def, double width, double height) -> Value {
         const PF_Point3DDef& point = def.u.point3d_d;
         return Point3DValue{point.x_dephault / 100 * width, point.y_dephault / 100 * height,
                             point.z_dephault / 100 * height};
     },
     [](const Value& value, double, double, Def& def) {
         const auto& point = std::get<Point3DValue>(value);
         def.u.point3d_d.x_value = point.x;
         def.u.point3d_d.y_value = point.y;
         def.u.point3d_d.z_value = point.z;
     },
     [](const Def& def, double, double) -> Value {
         const PF_Point3DDef& point = def.u.point3d_d;
         return Point3DValue{point.x_value, point.y_value, point.z_value};
     }},
    {PF_Param_COLOR, 5, [](const Def& def, double, double) -> Value { return FromPixel(def.u.cd.dephault); },
     [](const Value& value, double, double, Def& def) {
         const auto& color = std::get<ColorValue>(value);
         def.u.cd.value = {ToByte(color.alpha), ToByte(color.red), ToByte(color.green), ToByte(color.blue)};
     },
     [](const Def& def, double, double) -> Value { return FromPixel(def.u.cd.value); }},
    {PF_Param_LAYER, 6, [](const Def&, double, double) -> Value { return LayerValue(); },
     [](const Value&, double, double, Def&) {}, nullptr},
    {PF_Param_GROUP_START, 0, [](const Def&, double, double) -> Value { return {}; },
     [](const Value&, double, double, Def&) {}, nullptr},
    {PF_Param_GROUP_END, 0, [](const Def&, double, double) -> Value { return {}; },
     [](const Value&, double, double, Def&) {}, nullptr},
    {PF_Param_BUTTON, 0, [](const Def&, double, double) -> Value { return {}; },
     [](const Value&, double, double, Def&) {}, nullptr},
};

const KindRow* FindKind(PF_ParamType type) {
    for (const KindRow& row : s_Kinds)
        if (row.type == type)
            return &row;
    return nullptr;
}

std::vector<std::string> SplitChoices(const char* names) {
    std::vector<std::string> choices;
    for (const char* name = names; name && *name;) {
        const char* end = std::strchr(name, '|');
        choices.push_back(end ? std::string(name, end) : std::string(name));
        name = end ? end + 1 : nullptr;
    }
    return choices;
}

std::string Label(const Def& def) {
    return {def.PF_DEF_NAME, strnlen(def.PF_DEF_NAME, sizeof def.PF_DEF_NAME)};
}

} // namespace

ParamValue DefaultValue(const PublishedParam& param, double width, double height) {
    return FindKind(param.type)->dephault(param.def, width, height);
}

bool Fits(const PublishedParam& param, const ParamValue& value) {
    return FindKind(param.type)->alternative == value.index();
}

void WriteValue(const ParamValue& value, double scaleX, double scaleY, PF_ParamDef& def) {
    FindKind(def.param_type)->write(value, scaleX, scaleY, def);
}

ParamValue ReadValue(const PF_ParamDef& def, double scaleX, double scaleY, const ParamValue& old) {
    const KindRow* kind = FindKind(def.param_type);
    return kind && kind->read ? kind->read(def, scaleX, scaleY) : old;
}

ParamTable::ParamTable() : m_Params(1) {
    m_Params[0].def.u.ld.dephault = PF_LayerDefault_MYSELF;
}

bool ParamTable::Add(const PF_ParamDef& def) {
    if (!FindKind(def.param_type))
        return false;
    PublishedParam param;
    param.type = def.param_type;
    param.id = def.uu.id;
    param.label = Label(def);
    param.flags = def.flags;
    param.uiFlags = def.ui_flags;
    param.def = def;
    param.def.uu.change_flags = PF_ChangeFlag_NONE;
    if (def.param_type == PF_Param_FLOAT_SLIDER) {
        const PF_FloatSliderDef& slider = def.u.fs_d;
        param.validMin = slider.valid_min;
        param.validMax = slider.valid_max;
        param.sliderMin = slider.slider_min;
        param.sliderMax = slider.slider_max;
        param.precision = slider.precision;
    } else if (def.param_type == PF_Param_POPUP) {
        param.choices = SplitChoices(def.u.pd.u.PF_DEF_NAMESPTR);
        param.def.u.pd.u.PF_DEF_NAMESPTR = "";
    } else if (def.param_type == PF_Param_CHECKBOX) {
        param.text = def.u.bd.u.PF_DEF_NAMEPTR ? def.u.bd.u.PF_DEF_NAMEPTR : "";
        param.def.u.bd.u.PF_DEF_NAMEPTR = "";
    } else if (def.param_type == PF_Param_BUTTON) {
        param.text = def.u.button_d.u.PF_DEF_NAMESPTR ? def.u.button_d.u.PF_DEF_NAMESPTR : "";
        param.def.u.button_d.u.PF_DEF_NAMESPTR = "";
    }
    m_Params.push_back(std::move(param));
    return true;
}

} // namespace stricthost
