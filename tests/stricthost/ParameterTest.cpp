#include <gmock/gmock.h>

#include <cstring>

#include "AE_EffectSuites.h"
#include "tests/stricthost/StandIn.h"

namespace {

using stricthost::Options;
using testing::ElementsAre;
using testing::IsEmpty;

PF_Err AddSeveral(Command& c) {
    PF_ParamDef slider = MakeParam(PF_Param_FLOAT_SLIDER, "Amount");
    slider.u.fs_d.valid_min = -1;
    slider.u.fs_d.valid_max = 3;
    slider.u.fs_d.dephault = 0.5f;
    slider.u.fs_d.precision = 2;
    AddParam(c, slider);
    char choices[] = "One|Two|Three";
    PF_ParamDef popup = MakeParam(PF_Param_POPUP, "Kind");
    popup.u.pd.num_choices = 3;
    popup.u.pd.dephault = 2;
    popup.u.pd.u.namesptr = choices;
    AddParam(c, popup);
    std::memset(choices, '?', sizeof choices - 1); // the host must have its own copy
    PF_ParamDef color = MakeParam(PF_Param_COLOR, "Colour");
    color.u.cd.dephault = {255, 51, 102, 0};
    AddParam(c, color);
    PF_ParamDef point = MakeParam(PF_Param_POINT, "Centre");
    point.u.td.x_dephault = 50 << 16;
    point.u.td.y_dephault = 25 << 16;
    AddParam(c, point);
    PF_ParamDef angle = MakeParam(PF_Param_ANGLE, "Angle");
    angle.u.ad.dephault = 90 << 16;
    AddParam(c, angle);
    AddParam(c, MakeParam(PF_Param_POINT_3D, "Eye"));
    return AddParam(c, MakeParam(PF_Param_LAYER, "Map"));
}

// What a frame's checkout of a parameter gives.
PF_ParamDef CheckedOut(StandIn& plugin, stricthost::Instance& instance, A_long index,
                       PF_RationalScale downsample = {1, 1}) {
    PF_ParamDef seen = {};
    plugin.before[PF_Cmd_SMART_RENDER] = [&](Command& c) {
        PF_ParamDef def = {};
        c.in->inter.checkout_param(c.in->effect_ref, index, 0, 1, 25, &def);
        seen = def;
        c.in->inter.checkin_param(c.in->effect_ref, &def);
    };
    const fxhost::Picture input = Gradient(4, 4);
    stricthost::FrameRequest request;
    request.input = &input;
    request.downsampleX = request.downsampleY = downsample;
    instance.Render(request);
    return seen;
}

TEST(ParameterTest, ThePublishedTableIsReadable) {
    StandIn plugin;
    plugin.addParams = AddSeveral;
    const auto host = SetUpHost();
    const auto& params = host->Params();
    ASSERT_EQ(params.size(), 8u);
    EXPECT_EQ(params[1].label, "Amount");
    EXPECT_EQ(params[1].validMin, -1);
    EXPECT_EQ(params[1].validMax, 3);
    EXPECT_EQ(params[1].precision, 2);
    EXPECT_THAT(params[2].choices, ElementsAre("One", "Two", "Three"));
    const stricthost::Instance& instance = host->NewInstance(200, 100);
    EXPECT_EQ(std::get<double>(instance.Value(1)), 0.5);
    EXPECT_EQ(std::get<int>(instance.Value(2)), 2);
    EXPECT_FLOAT_EQ(std::get<stricthost::ColorValue>(instance.Value(3)).green, 0.4f);
    EXPECT_EQ(std::get<stricthost::PointValue>(instance.Value(4)).x, 100);
    EXPECT_EQ(std::get<stricthost::PointValue>(instance.Value(4)).y, 25);
    EXPECT_EQ(std::get<double>(instance.Value(5)), 90);
}

TEST(ParameterTest, ValuesReachTheFrameInTheHostsUnits) {
    StandIn plugin;
    plugin.addParams = AddSeveral;
    const auto host = SetUpHost();
    stricthost::Instance& instance = host->NewInstance();
    instance.SetValue(1, 1.25);
    instance.SetValue(3, stricthost::ColorValue{1.0f, 0.5f, 0.0f, 1.0f});
    instance.SetValue(4, stricthost::PointValue{20, 40});
    instance.SetValue(5, -45.5);
    instance.SetValue(6, stricthost::Point3DValue{1, 2, 3});
    EXPECT_EQ(CheckedOut(plugin, instance, 1).u.fs_d.value, 1.25);
    EXPECT_EQ(CheckedOut(plugin, instance, 3).u.cd.value.green, 128);
    EXPECT_EQ(CheckedOut(plugin, instance, 3).u.cd.value.red, 255);
    EXPECT_EQ(CheckedOut(plugin, instance, 4, {1, 2}).u.td.x_value, 10 << 16); // half resolution
    EXPECT_EQ(CheckedOut(plugin, instance, 4, {1, 4}).u.td.y_value, 10 << 16);
    EXPECT_EQ(CheckedOut(plugin, instance, 5).u.ad.value, -2981888); // -45.5 * 65536
    EXPECT_EQ(CheckedOut(plugin, instance, 6).u.point3d_d.z_value, 3);
    EXPECT_THROW(instance.SetValue(1, 2), std::invalid_argument); // an integer for a slider
    EXPECT_THROW(instance.SetValue(8, 2.0), std::invalid_argument);
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

TEST(ParameterTest, ALayerHasPixelsOnlyWhenItIsSet) {
    StandIn plugin;
    plugin.addParams = AddSeveral;
    const auto host = SetUpHost();
    stricthost::Instance& instance = host->NewInstance();
    EXPECT_EQ(CheckedOut(plugin, instance, 7).u.ld.data, nullptr);
    instance.SetValue(7, std::make_shared<const fxhost::Picture>(Gradient(6, 2)));
    const PF_LayerDef layer = CheckedOut(plugin, instance, 7).u.ld;
    EXPECT_NE(layer.data, nullptr);
    EXPECT_EQ(layer.width, 6);
    EXPECT_EQ(layer.height, 2);
    EXPECT_EQ(layer.rowbytes, 6 * 4 + 16);
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

TEST(ParameterTest, ColoursKeepTheirFloatsInTheSuite) {
    StandIn plugin;
    plugin.addParams = AddSeveral;
    PF_PixelFloat seen = {};
    plugin.before[PF_Cmd_SMART_RENDER] = [&seen](Command& c) {
        PF_ParamDef def = {};
        c.in->inter.checkout_param(c.in->effect_ref, 3, 0, 1, 25, &def);
        const auto* suite = static_cast<const PF_ColorParamSuite1*>(Acquire(c, "PF ColorParamSuite", 1));
        suite->PF_GetFloatingPointColorFromColorDef(c.in->effect_ref, &def, &seen);
        Release(c, "PF ColorParamSuite", 1);
        c.in->inter.checkin_param(c.in->effect_ref, &def);
    };
    const auto host = SetUpHost();
    stricthost::Instance& instance = host->NewInstance();
    instance.SetValue(3, stricthost::ColorValue{0.123f, 2.0f, -1.0f, 0.5f});
    const fxhost::Picture input = Gradient(4, 4);
    stricthost::FrameRequest request;
    request.input = &input;
    instance.Render(request);
    EXPECT_FLOAT_EQ(seen.red, 0.123f);
    EXPECT_FLOAT_EQ(seen.green, 2.0f);
    EXPECT_FLOAT_EQ(seen.blue, -1.0f);
    EXPECT_FLOAT_EQ(seen.alpha, 0.5f);
}

TEST(ParameterTest, ThePluginChangesLooksAndValuesOfOneInstance) {
    StandIn plugin;
    plugin.after[PF_Cmd_UPDATE_PARAMS_UI] = [](Command& c) {
        PF_ParamDef def = *c.params[1];
        std::strcpy(def.name, "Renamed");
        def.ui_flags |= PF_PUI_DISABLED;
        const auto* suite = static_cast<const PF_ParamUtilsSuite3*>(Acquire(c, "PF Param Utils Suite", 3));
        suite->PF_UpdateParamUI(c.in->effect_ref, 1, &def);
        Release(c, "PF Param Utils Suite", 3);
    };
    plugin.after[PF_Cmd_USER_CHANGED_PARAM] = [](Command& c) {
        EXPECT_EQ(static_cast<PF_UserChangedParamExtra*>(c.extra)->param_index, 1);
        c.params[1]->u.fs_d.value = 9;
        c.params[1]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
    };
    const auto host = SetUpHost();
    stricthost::Instance& changed = host->NewInstance();
    const stricthost::Instance& other = host->NewInstance();
    EXPECT_EQ(changed.UpdateUI(), PF_Err_NONE);
    EXPECT_EQ(changed.UserChanged(1), PF_Err_NONE);
    EXPECT_EQ(changed.Label(1), "Renamed");
    EXPECT_FALSE(changed.IsEnabled(1));
    EXPECT_EQ(std::get<double>(changed.Value(1)), 9);
    EXPECT_EQ(other.Label(1), "Amount");
    EXPECT_TRUE(other.IsEnabled(1));
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

TEST(ParameterTest, AGapInTheCountIsRightWhenTheHostWasTold) {
    StandIn plugin;
    plugin.after[PF_Cmd_PARAMS_SETUP] = [](Command& c) { ++c.out->num_params; };
    Options options;
    options.allowParamGap = true;
    const auto host = SetUpHost(options);
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

} // namespace
