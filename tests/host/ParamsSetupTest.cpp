#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/HostState.h"
#include "host/ParamName.h"
#include "tests/host/FakeHost.h"
#include "tests/support/RecordingPlugin.h"

namespace {

using testing::ElementsAre;
using testing::Pair;

RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

Parameter Declared(Parameter::Type type, std::initializer_list<float> value = {}) {
    Parameter parameter("p", type, "Label");
    unsigned index = 0;
    for (const float component : value)
        parameter.value.SetFloat(index++, component);
    return parameter;
}

Parameter DeclaredInt(Parameter::Type type, std::int32_t value) {
    Parameter parameter("p", type, "Label");
    parameter.value.SetInt(0, value);
    return parameter;
}

// Publishes one parameter as the first and returns what the host got.
PF_ParamDef Published(FakeHost& host, const Parameter& parameter) {
    Engine().params = {parameter};
    EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), PF_Err_NONE);
    EXPECT_EQ(host.out.num_params, 2);
    EXPECT_EQ(host.params.size(), 2u);
    return host.params.back();
}

TEST(ParamsSetupTest, EveryTypeGetsItsKindFlagsAndId) {
    struct Row {
        Parameter::Type type;
        int kind, flags, id;
        const char* name;
    };
    const Row rows[] = {
        {Parameter::FLOAT, 10, 0x60, 3, "Label"},  {Parameter::POINT, 18, 0, 3, "Label"},
        {Parameter::COLOR, 5, 0x60, 3, "Label"},   {Parameter::LAYER, 0, 0x40, 3, "Label"},
        {Parameter::POINT2D, 6, 0x60, 3, "Label"}, {Parameter::TEXTURE, 7, 0x40, 3, "Label"},
        {Parameter::PATH, 12, 0x40, 1, "Label"},   {Parameter::BOOL, 4, 0x40, 3, "Label"},
        {Parameter::POPUP, 7, 0x40, 3, "Label"},   {Parameter::GROUP_START, 13, 0, 3, "Label"},
        {Parameter::GROUP_END, 14, 0, 3, ""},      {Parameter::ANGLE, 3, 0x60, 3, "Label"},
    };
    for (const Row& row : rows) {
        FakeHost host;
        const PF_ParamDef def = Published(host, Declared(row.type));
        EXPECT_EQ(def.param_type, row.kind) << row.type;
        EXPECT_EQ(def.flags, row.flags) << row.type;
        EXPECT_EQ(def.uu.id, row.id) << row.type;
        EXPECT_EQ(def.ui_flags, 0) << row.type;
        EXPECT_STREQ(def.PF_DEF_NAME, row.name) << row.type;
    }
}

TEST(ParamsSetupTest, SlidersCarryRangeAndPrecision) {
    Parameter slider = Declared(Parameter::FLOAT, {2.5f});
    slider.min.SetFloat(0, -3);
    slider.max.SetFloat(0, 7);
    slider.flags = 0x03000008;
    FakeHost host;
    const PF_FloatSliderDef def = Published(host, slider).u.fs_d;
    EXPECT_EQ(def.value, 2.5);
    EXPECT_EQ(def.dephault, 2.5f);
    EXPECT_THAT((std::vector{def.valid_min, def.slider_min, def.valid_max, def.slider_max}),
                ElementsAre(-3, -3, 7, 7));
    EXPECT_EQ(def.precision, 3);
    EXPECT_EQ(def.curve_tolerance, 0.05f);
    EXPECT_EQ(def.display_flags, 0);
    slider.flags = 0xFE000000;
    FakeHost other;
    EXPECT_EQ(Published(other, slider).u.fs_d.precision, -2);
}

TEST(ParamsSetupTest, PointsKeepTheirOddDefaults) {
    FakeHost host;
    const PF_Point3DDef solid = Published(host, Declared(Parameter::POINT, {1, 2, 3})).u.point3d_d;
    EXPECT_THAT((std::vector{solid.x_value, solid.y_value, solid.z_value}), ElementsAre(1, 2, 2));
    EXPECT_THAT((std::vector{solid.x_dephault, solid.y_dephault, solid.z_dephault}), ElementsAre(1, 2, 2));

    struct Row {
        float value;
        std::int32_t expected; // (value in 16.16, rounded) shifted left by 16 in 32 bits
    };
    for (const Row& row :
         {Row{50.0f, 0}, Row{0.5f, static_cast<std::int32_t>(0x80000000u)}, Row{1.0f / 65536, 0x10000},
          Row{-1.0f / 65536, -0x10000}, Row{1.6f / 65536, 0x20000}, Row{-1.6f / 65536, -0x20000}}) {
        FakeHost other;
        const PF_PointDef flat = Published(other, Declared(Parameter::POINT2D, {row.value, row.value})).u.td;
        EXPECT_THAT((std::vector{flat.x_value, flat.y_value, flat.x_dephault, flat.y_dephault}),
                    testing::Each(row.expected))
            << row.value;
        EXPECT_EQ(flat.restrict_bounds, 0);
    }
}

TEST(ParamsSetupTest, ColoursAreCutToBytesWithoutScaling) {
    const auto publish = [](std::initializer_list<float> value) {
        FakeHost host;
        const PF_Pixel pixel = Published(host, Declared(Parameter::COLOR, value)).u.cd.dephault;
        return std::vector<int>{pixel.alpha, pixel.red, pixel.green, pixel.blue};
    };
    EXPECT_THAT(publish({0.5f, 0.5f, 0.5f, 1.0f}), ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(publish({10.9f, 20.0f, 255.0f, 256.0f}), ElementsAre(0, 10, 20, 255));
    EXPECT_THAT(publish({-1.0f, 1e30f, 0.0f, 3.0f}), ElementsAre(3, 255, 0, 0));
}

TEST(ParamsSetupTest, ChoicesBoolsAndAngles) {
    FakeHost host;
    Parameter popup = DeclaredInt(Parameter::POPUP, 0x1FFFE);
    popup.choices = "One|Two";
    popup.choiceCount = 2;
    PF_PopupDef def = Published(host, popup).u.pd;
    EXPECT_EQ(def.value, -2);
    EXPECT_EQ(def.dephault, -2);
    EXPECT_EQ(def.num_choices, 2);
    EXPECT_EQ(host.choices[1], "One|Two");

    FakeHost texture;
    def = Published(texture, DeclaredInt(Parameter::TEXTURE, 5)).u.pd;
    EXPECT_EQ(def.value, 0);
    EXPECT_EQ(def.dephault, 0);
    EXPECT_EQ(def.num_choices, 10);

    FakeHost box;
    const PF_CheckBoxDef check = Published(box, DeclaredInt(Parameter::BOOL, 0x101)).u.bd;
    EXPECT_EQ(check.value, 0x101);
    EXPECT_EQ(check.dephault, 1);

    FakeHost angle;
    EXPECT_EQ(Published(angle, Declared(Parameter::ANGLE, {-1.99999f})).u.ad.value, -131071);
}

TEST(ParamsSetupTest, HiddenParametersTakeNoIndexAndUnknownOnesDo) {
    FakeHost host;
    Parameter hidden = Declared(Parameter::FLOAT);
    hidden.flags = Parameter::NotPublished;
    Engine().params = {hidden, Declared(Parameter::COLOR), Declared(Parameter::UNKNOWN),
                       Declared(static_cast<Parameter::Type>(13)), Declared(Parameter::POINT)};
    ASSERT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), PF_Err_NONE);
    EXPECT_THAT(Adapter::s_MapPlugin2AEParam, ElementsAre(Pair(1, 1), Pair(2, 2), Pair(3, 3), Pair(4, 4)));
    EXPECT_EQ(host.params.size(), 3u) << "input, colour, point";
    EXPECT_EQ(host.out.num_params, 5);
    EXPECT_EQ(Adapter::s_ParamsStart, 0);
    EXPECT_EQ(Adapter::s_ColorsStart, 1);
    EXPECT_EQ(Adapter::s_PointsStart, 4);
}

TEST(ParamsSetupTest, LongLabelsAreBoundedToTheHostsField) {
    FakeHost host;
    Parameter slider("p", Parameter::FLOAT, std::string(60, 'n'));
    PF_ParamDef def = Published(host, slider);
    EXPECT_EQ(std::string(def.PF_DEF_NAME), std::string(31, 'n'));
    EXPECT_EQ(def.flags, 0x60) << "the field after the name";
    FakeHost accents;
    slider.label = std::string(30, 'n') + "\xC3\xA9";
    EXPECT_EQ(std::string(Published(accents, slider).PF_DEF_NAME), std::string(30, 'n'));
}

TEST(ParamsSetupTest, RefusalsEndItPathsExcepted) {
    FakeHost host;
    host.failAddParam = 2;
    Engine().params = {Declared(Parameter::FLOAT), Declared(Parameter::BOOL), Declared(Parameter::ANGLE)};
    EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), PF_Err_UNRECOGNIZED_PARAM_TYPE);
    EXPECT_EQ(host.out.num_params, 2);

    FakeHost paths;
    paths.failAddParam = 1;
    Engine().params = {Declared(Parameter::PATH)};
    EXPECT_EQ(paths.Send(PF_Cmd_PARAMS_SETUP), PF_Err_NONE);
    EXPECT_EQ(paths.out.num_params, 2);
}

TEST(ParamsSetupTest, OptionsButtonIsBlankInAfterEffectsAlone) {
    FakeHost host;
    EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), PF_Err_NONE);
    EXPECT_THAT(host.log, ElementsAre("options button ' '"));
    EXPECT_EQ(host.customUi.events, 4);
    EXPECT_EQ(host.customUi.reserved, 0);
    host.failing["options button"] = 9;
    EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), 9);
    EXPECT_EQ(host.Unreturned(), "");
    FakeHost premiere(FakeHost::Kind::Premiere);
    EXPECT_EQ(premiere.Send(PF_Cmd_PARAMS_SETUP), PF_Err_NONE);
    EXPECT_THAT(premiere.log, ElementsAre());
    EXPECT_EQ(premiere.customUi.events, 4);
}

TEST(EventTest, OnlyColoursBeforeTheFirst3DPointAreHandled) {
    FakeHost host;
    Engine().params = {Declared(Parameter::FLOAT), Declared(Parameter::COLOR), Declared(Parameter::ANGLE),
                       Declared(Parameter::POINT), Declared(Parameter::COLOR)};
    host.SetUp();
    const auto handled = [&](A_long index) {
        PF_EventExtra extra = {};
        extra.effect_win.index = index;
        EXPECT_EQ(host.Send(PF_Cmd_EVENT, &extra), PF_Err_NONE);
        return extra.evt_out_flags;
    };
    EXPECT_EQ(handled(1), 0);
    EXPECT_EQ(handled(2), PF_EO_HANDLED_EVENT);
    EXPECT_EQ(handled(3), PF_EO_HANDLED_EVENT);
    EXPECT_EQ(handled(4), 0);
    EXPECT_EQ(handled(5), 0);
    EXPECT_EQ(host.Send(PF_Cmd_EVENT), PF_Err_NONE) << "without an event";
}

} // namespace
