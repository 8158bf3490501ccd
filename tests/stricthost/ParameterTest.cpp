#include "AE_EffectSuites.h"
#include "tests/stricthost/HostTest.h"

namespace {

using stricthost::ColorValue;
using stricthost::Point3DValue;
using stricthost::PointValue;
using testing::ElementsAre;

enum Index : A_long { Slider = 1, Popup, Checkbox, Color, Point, Angle, Point3D, Path, Layer, Count };

// One parameter of every kind.
PF_Err AddEveryKind(Command& c) {
    PF_ParamDef defs[Count] = {};
    defs[Slider].u.fs_d.valid_min = -1;
    defs[Slider].u.fs_d.valid_max = 3;
    defs[Slider].u.fs_d.dephault = 0.5f;
    defs[Slider].u.fs_d.precision = 2;
    char choices[] = "One|Two|Three";
    defs[Popup].u.pd.dephault = 2;
    defs[Popup].u.pd.u.namesptr = choices;
    defs[Checkbox].u.bd.dephault = 1;
    defs[Checkbox].u.bd.value = 5;
    defs[Color].u.cd.dephault = {255, 51, 102, 0};
    defs[Point].u.td.x_dephault = 150 * 65536; // percent
    defs[Point].u.td.y_dephault = -25 * 65536;
    defs[Angle].u.ad.dephault = 90 * 65536;
    defs[Point3D].u.point3d_d.x_dephault = 50;
    defs[Point3D].u.point3d_d.y_dephault = defs[Point3D].u.point3d_d.z_dephault = 10;
    A_long index = Slider;
    for (const PF_ParamType type :
         {PF_Param_FLOAT_SLIDER, PF_Param_POPUP, PF_Param_CHECKBOX, PF_Param_COLOR, PF_Param_POINT,
          PF_Param_ANGLE, PF_Param_POINT_3D, PF_Param_PATH, PF_Param_LAYER})
        EXPECT_EQ(c.Add(type, "Amount", defs[index++]), PF_Err_NONE);
    std::memset(choices, '?', sizeof choices - 1); // the host must have its own copy
    return PF_Err_NONE;
}

// Values of the parameters up to the path, as the plug-in receives them.
std::vector<Numbers> ValuesOf(const std::vector<PF_ParamDef>& defs) {
    const PF_Pixel& color = defs[Color].u.cd.value;
    const PF_Point3DDef& point = defs[Point3D].u.point3d_d;
    return {{defs[Slider].u.fs_d.value},
            {double(defs[Popup].u.pd.value)},
            {double(defs[Checkbox].u.bd.value)},
            {double(color.red), double(color.green), double(color.blue), double(color.alpha)},
            {defs[Point].u.td.x_value / 65536.0, defs[Point].u.td.y_value / 65536.0},
            {defs[Angle].u.ad.value / 65536.0},
            {point.x_value, point.y_value, point.z_value},
            {double(defs[Path].u.path_d.path_id)}};
}

class ParameterTest : public HostTest {
protected:
    ParameterTest() { m_Plugin.does[PF_Cmd_PARAMS_SETUP] = AddEveryKind; }

    // Renders a frame of half the width and a quarter of the height, and returns what it checks out.
    std::vector<PF_ParamDef> CheckedOut(Instance& instance) {
        std::vector<PF_ParamDef> defs(Count);
        m_Plugin.before[PF_Cmd_RENDER] = [&](Command& c) {
            for (A_long i = 0; i < Count; ++i) {
                PF_ParamDef def = {};
                EXPECT_EQ(c.CheckOut(i, &def), PF_Err_NONE);
                defs[static_cast<std::size_t>(i)] = def;
                if (i == Color)
                    c.Borrow<PF_ColorParamSuite1>("PF ColorParamSuite", 1)
                        .PF_GetFloatingPointColorFromColorDef(c.in->effect_ref, &def, &m_Float);
                c.CheckIn(&def);
            }
        };
        m_Request.downsampleX = {1, 2};
        m_Request.downsampleY = {1, 4};
        EXPECT_EQ(instance.Render(m_Request).error, PF_Err_NONE);
        return defs;
    }

    PF_PixelFloat m_Float = {}; // the colour of the last frame
};

TEST_F(ParameterTest, PublishedParametersKeepTheirTextsRangesAndDefaults) {
    StartHost();
    const auto& params = m_Host->Params();
    ASSERT_EQ(params.size(), Count);
    EXPECT_EQ(params[Slider].label, "Amount");
    EXPECT_EQ(params[Slider].validMin, -1);
    EXPECT_EQ(params[Slider].validMax, 3);
    EXPECT_EQ(params[Slider].precision, 2);
    EXPECT_THAT(params[Popup].choices, ElementsAre("One", "Two", "Three"));
    EXPECT_EQ(ValuesOf(CheckedOut(m_Host->NewInstance(200, 100))),
              (std::vector<Numbers>{
                  {0.5}, {2}, {1}, {51, 102, 0, 255}, {150, -25 / 4.0}, {90}, {100, 10, 10}, {0}}));
}

TEST_F(ParameterTest, ValuesReachTheFrameInTheHostsUnits) {
    Instance& instance = Start();
    const stricthost::ParamValue values[] = {
        1.25, 3, 0, ColorValue{1, 0.5f, -1, 0.2f}, PointValue{20, 80}, -45.5, Point3DValue{1, 2, 3}, 7};
    for (std::size_t i = Slider; i < Layer; ++i)
        instance.SetValue(i, values[i - Slider]);
    const auto seen = CheckedOut(instance);
    EXPECT_EQ(ValuesOf(seen),
              (std::vector<Numbers>{{1.25}, {3}, {0}, {255, 128, 0, 51}, {10, 20}, {-45.5}, {1, 2, 3}, {7}}));
    EXPECT_EQ((Numbers{m_Float.red, m_Float.blue, m_Float.alpha}), (Numbers{1, -1, 0.2f}));
    EXPECT_EQ(seen[Layer].u.ld.data, nullptr);
    instance.SetValue(Layer, std::make_shared<const fxhost::Picture>(Gradient(6, 2)));
    const PF_LayerDef layer = CheckedOut(instance)[Layer].u.ld;
    EXPECT_NE(layer.data, nullptr);
    EXPECT_EQ(layer.width, 6);
    EXPECT_EQ(layer.rowbytes, 6 * 4 + 16);
    EXPECT_THROW(instance.SetValue(Slider, 2), std::invalid_argument); // an integer
    EXPECT_THROW(instance.SetValue(Count, 2.0), std::invalid_argument);
    Finish();
}

TEST_F(ParameterTest, PluginChangesControlsAndValuesOfOneInstanceOnly) {
    m_Plugin.after[PF_Cmd_UPDATE_PARAMS_UI] = [](Command& c) {
        PF_ParamDef def = *c.params[Slider];
        std::strcpy(def.name, "Renamed");
        def.ui_flags |= PF_PUI_DISABLED;
        c.Borrow<PF_ParamUtilsSuite3>("PF Param Utils Suite", 3)
            .PF_UpdateParamUI(c.in->effect_ref, Slider, &def);
    };
    m_Plugin.after[PF_Cmd_USER_CHANGED_PARAM] = [](Command& c) {
        EXPECT_EQ(static_cast<PF_UserChangedParamExtra*>(c.extra)->param_index, Point);
        c.params[Color]->u.cd.value = {0, 255, 0, 51};
        c.params[Slider]->u.fs_d.value = 9;
        c.params[Color]->uu.change_flags = c.params[Slider]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
        c.params[Popup]->u.pd.value = 1; // without the flag
    };
    Instance& changed = Start();
    Instance& other = m_Host->NewInstance();
    EXPECT_EQ(changed.UpdateUI(), PF_Err_NONE);
    EXPECT_EQ(changed.UserChanged(Point), PF_Err_NONE);
    EXPECT_EQ(changed.Label(Slider), "Renamed");
    EXPECT_FALSE(changed.IsEnabled(Slider));
    EXPECT_EQ(ValuesOf(CheckedOut(changed)),
              (std::vector<Numbers>{{9}, {2}, {1}, {255, 0, 51, 0}, {480, -22.5}, {90}, {320, 36, 36}, {0}}));
    EXPECT_EQ(other.Label(Slider), "Amount");
    EXPECT_TRUE(other.IsEnabled(Slider));
    EXPECT_EQ(ValuesOf(CheckedOut(other))[0], Numbers{0.5});
    Finish();
}

TEST_F(ParameterTest, OptionsAllowAGapInTheCountAndRefuseKinds) {
    m_Plugin.does[PF_Cmd_PARAMS_SETUP] = [](Command& c) {
        ++c.out->num_params;
        EXPECT_EQ(c.Add(PF_Param_PATH, "Path"), PF_Err_UNRECOGNIZED_PARAM_TYPE);
        return c.Add(PF_Param_ANGLE, "Angle");
    };
    m_Options.allowParamGap = true;
    m_Options.refusedTypes = {PF_Param_PATH};
    StartHost();
    EXPECT_EQ(m_Host->Params().back().type, PF_Param_ANGLE);
    EXPECT_EQ(m_Host->Params().size(), 2u);
    Finish();
    m_Plugin.does[PF_Cmd_PARAMS_SETUP] = [](Command& c) {
        c.Add(PF_Param_ANGLE, "Angle");
        return --c.out->num_params, PF_Err_NONE;
    };
    StartHost();
    EXPECT_THAT(m_Host->Violations(), ElementsAre(testing::HasSubstr("reported 1 parameters, but added 1")))
        << "too few parameters are no gap";
}

} // namespace
