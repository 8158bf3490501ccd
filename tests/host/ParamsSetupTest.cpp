#include "AE_EffectUI.h"
#include "host/EntryPoint.h"
#include "host/HostState.h"
#include "host/HostText.h"
#include "tests/host/TestHost.h"

namespace {

using testing::Pair;

// The content of a definition besides its flags and name; which fields depends on its kind.
std::vector<double> Content(const PF_ParamDef& def) {
    const auto& u = def.u;
    switch (def.param_type) {
    case PF_Param_FLOAT_SLIDER:
        return {u.fs_d.value,     u.fs_d.dephault,   u.fs_d.valid_min,         u.fs_d.slider_min,
                u.fs_d.valid_max, u.fs_d.slider_max, double(u.fs_d.precision), u.fs_d.curve_tolerance};
    case PF_Param_POINT_3D:
        return {u.point3d_d.x_value,    u.point3d_d.y_value,    u.point3d_d.z_value,
                u.point3d_d.x_dephault, u.point3d_d.y_dephault, u.point3d_d.z_dephault};
    case PF_Param_POINT:
        return {double(u.td.x_value), double(u.td.y_value), double(u.td.x_dephault), double(u.td.y_dephault)};
    case PF_Param_COLOR:
        return {double(u.cd.dephault.red), double(u.cd.dephault.green), double(u.cd.dephault.blue),
                double(u.cd.dephault.alpha), double(u.cd.value.red)};
    case PF_Param_POPUP:
        return {double(u.pd.value), double(u.pd.dephault), double(u.pd.num_choices)};
    case PF_Param_CHECKBOX:
        return {double(u.bd.value), double(u.bd.dephault)};
    case PF_Param_ANGLE:
        return {double(u.ad.value), double(u.ad.dephault)};
    default:
        return {};
    }
}

Parameter Int(Parameter::Type type, std::int32_t value) {
    Parameter parameter = Declared(type);
    parameter.value.SetInt(0, value);
    return parameter;
}

TEST(ParamsSetupTest, EveryTypeIsPublishedAsItsHostParameter) {
    constexpr float step = 1.0f / 65536; // of 16.16
    constexpr double half = -2147483648.0;
    struct Row {
        const char* name;
        Parameter parameter;
        int kind, flags;
        std::vector<double> content;
        int id = 3;
    };
    const std::vector<double> oneStep = {65536, -65536, 65536, -65536};
    const std::vector<double> twoSteps = {131072, -131072, 131072, -131072};
    using P = Parameter;
    const Parameter slider = Declared(P::FLOAT, 0x03000008, {2.5f}),
                    negative = Declared(P::FLOAT, 0xFE000000);
    const Row rows[] = {
        {"slider", slider, 10, 0x60, {2.5, 2.5, -100, -100, 100, 100, 3, 0.05f}},
        {"negative precision", negative, 10, 0x60, {0, 0, -100, -100, 100, 100, -2, 0.05f}},
        {"3-D point with its y as z", Declared(P::POINT, 0, {1, 2, 3}), 18, 0, {1, 2, 2, 1, 2, 2}},
        {"colour without scaling", Declared(P::COLOR, 0, {0.5f, 0.5f, 0.5f, 1}), 5, 0x60, {0, 0, 0, 1, 0}},
        {"colour in bytes", Declared(P::COLOR, 0, {10.9f, 20, 255, 256}), 5, 0x60, {10, 20, 255, 0, 10}},
        {"colour out of range", Declared(P::COLOR, 0, {-1, 1e30f, 0, 3}), 5, 0x60, {255, 0, 0, 3, 255}},
        {"layer", Declared(P::LAYER), 0, 0x40, {}},
        // 16.16, rounded, then shifted left by 16 in 32 bits.
        {"2-D point", Declared(P::POINT2D, 0, {50, 0.5f}), 6, 0x60, {0, half, 0, half}},
        {"2-D point of one step", Declared(P::POINT2D, 0, {step, -step}), 6, 0x60, oneStep},
        {"2-D point rounded up", Declared(P::POINT2D, 0, {1.6f * step, -1.6f * step}), 6, 0x60, twoSteps},
        {"texture", Int(P::TEXTURE, 5), 7, 0x40, {0, 0, 10}},
        {"path, whose id is its index", Declared(P::PATH), 12, 0x40, {}, 1},
        {"check box with the low byte as default", Int(P::BOOL, 0x102), 4, 0x40, {258, 2}},
        {"pop-up narrowed to 16 bits", Int(P::POPUP, 0x1FFFE), 7, 0x40, {-2, -2, 10}},
        {"start of a group", Declared(P::GROUP_START), 13, 0, {}},
        {"end of a group", Declared(P::GROUP_END), 14, 0, {}},
        {"angle", Declared(P::ANGLE, 0, {-1.99999f}), 3, 0x60, {-131071, -131071}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TestHost host;
        host.SetUp({row.parameter});
        ASSERT_EQ(host.strict.Params().size(), 2u);
        const stricthost::PublishedParam& param = host.strict.Params().back();
        EXPECT_THAT((std::vector{param.type, param.flags, static_cast<int>(param.id), param.uiFlags}),
                    ElementsAre(row.kind, row.flags, row.id, 0));
        EXPECT_EQ(Content(param.def), row.content);
        EXPECT_EQ(param.label, row.parameter.type == Parameter::GROUP_END ? "" : "Label");
    }
}

TEST(ParamsSetupTest, TheFirstIndexOfEachKindIsKept) {
    std::vector<Parameter> params;
    for (int round = 0; round < 2; ++round)
        for (const Parameter::Type type :
             {Parameter::GROUP_START, Parameter::FLOAT, Parameter::POINT, Parameter::COLOR, Parameter::LAYER,
              Parameter::POINT2D, Parameter::TEXTURE, Parameter::PATH, Parameter::BOOL, Parameter::POPUP,
              Parameter::ANGLE, Parameter::GROUP_END})
            params.push_back(Declared(type));
    TestHost host;
    host.SetUp(params);
    using namespace Adapter;
    EXPECT_THAT((std::vector{s_ParamsStart, s_PointsStart, s_ColorsStart, s_LayersStart, s_Points2Start}),
                ElementsAre(2, 3, 4, 5, 6));
    EXPECT_THAT((std::vector{s_TextureStart, s_PathsStart, s_BoolsStart, s_PopupsStart, s_AngleStart}),
                ElementsAre(7, 8, 9, 10, 11));
}

TEST(ParamsSetupTest, ASecondSetUpForgetsTheParametersOfTheFirst) {
    TestHost host;
    host.before = [](Command& command) {
        if (command.code != PF_Cmd_PARAMS_SETUP)
            return;
        PF_InData in = command.in;
        in.inter.add_param = [](PF_ProgPtr, PF_ParamIndex, PF_ParamDef* def) -> PF_Err {
            if (def->param_type == PF_Param_CHECKBOX) {
                EXPECT_STREQ(def->u.bd.u.nameptr, "") << "hosts read the text beside the box";
            }
            return PF_Err_NONE;
        };
        Engine().params.push_back(Declared(Parameter::BOOL));
        EXPECT_EQ(EntryPointFunc(command.code, &in, &command.out, nullptr, nullptr, nullptr), PF_Err_NONE);
        Engine().params.pop_back();
    };
    host.SetUp({Declared(Parameter::FLOAT)});
    EXPECT_THAT(Adapter::s_MapPlugin2AEParam, ElementsAre(Pair(0, 1)));
}

TEST(ParamsSetupTest, LabelsAndChoicesArePublishedWithinTheHostsLimits) {
    Parameter popup = Declared(Parameter::POPUP);
    popup.choices = "One|Two";
    popup.label = std::string(60, 'n');
    TestHost host;
    host.SetUp({popup});
    EXPECT_THAT(host.strict.Params().back().choices, ElementsAre("One", "Two"));
    EXPECT_EQ(host.strict.Params().back().label, std::string(31, 'n'));
    EXPECT_EQ(Adapter::BoundedText("n\xC3\xA9", 2), "n") << "characters are not split";
    EXPECT_EQ(Adapter::BoundedText("n\xC3\xA9", 3), "n\xC3\xA9");
}

TEST(ParamsSetupTest, HiddenParametersTakeNoIndexAndUnknownOnesDo) {
    TestHost host(AE, [](auto& options) { options.allowParamGap = true; });
    A_long reported = 0;
    host.after = [&](Command& command) { reported = std::max(reported, command.out.num_params); };
    Instance& instance =
        host.Start({Declared(Parameter::FLOAT, Parameter::NotPublished), Declared(Parameter::FLOAT),
                    Declared(Parameter::COLOR), Declared(Parameter::ANGLE), Declared(Parameter::POINT),
                    Declared(Parameter::COLOR), Declared(Parameter::UNKNOWN), Declared(Parameter::BOOL)});
    EXPECT_THAT(Adapter::s_MapPlugin2AEParam, ElementsAre(Pair(1, 1), Pair(2, 2), Pair(3, 3), Pair(4, 4),
                                                          Pair(5, 5), Pair(6, 6), Pair(7, 7)));
    EXPECT_EQ(host.strict.Params().size(), 7u);
    EXPECT_EQ(reported, 8);
    // The adapter counts up to 7, but the host has parameters up to 6 and may report any of these counts.
    for (const A_long known : {7, 8, 0}) {
        host.before = [&](Command& command) { command.in.num_params = known; };
        EXPECT_EQ(Render(instance).error, PF_Err_NONE) << known;
        EXPECT_EQ(instance.UpdateUI(), PF_Err_NONE) << known;
        EXPECT_EQ(Engine().Count("setParam 7"), 0u);
    }
    host.before = nullptr;
    // Only colours before the first 3-D point handle events.
    std::vector<int> handled;
    for (const A_long index : {1, 2, 3, 4, 5, 6}) {
        PF_EventExtra extra = {};
        extra.effect_win.index = index;
        EXPECT_EQ(TestHost::Send(PF_Cmd_EVENT, instance, &extra), PF_Err_NONE);
        handled.push_back(extra.evt_out_flags);
    }
    EXPECT_THAT(handled, ElementsAre(0, PF_EO_HANDLED_EVENT, PF_EO_HANDLED_EVENT, 0, 0, 0));
    EXPECT_EQ(TestHost::Send(PF_Cmd_EVENT, instance), PF_Err_NONE) << "without an event";
}

} // namespace
