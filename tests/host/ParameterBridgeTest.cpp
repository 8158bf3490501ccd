#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/HostState.h"
#include "host/ParamName.h"
#include "host/SequenceRecord.h"
#include "tests/host/FakeHost.h"
#include "tests/support/RecordingPlugin.h"

namespace {

using testing::ElementsAre;
using testing::Pair;

RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

Parameter Declared(Parameter::Type type, std::uint32_t flags = 0) {
    Parameter parameter("p", type, "Label");
    parameter.flags = flags;
    return parameter;
}

std::vector<float> Floats(const Parameter::Value& value) {
    return {value.Float(0), value.Float(1), value.Float(2), value.Float(3)};
}

TEST(ParameterValueTest, EveryKindReachesTheEngine) {
    FakeHost host;
    Engine().params = {Declared(Parameter::ANGLE),   Declared(Parameter::BOOL),
                       Declared(Parameter::POPUP),   Declared(Parameter::COLOR),
                       Declared(Parameter::POINT2D), Declared(Parameter::FLOAT),
                       Declared(Parameter::POINT),   Declared(Parameter::GROUP_START)};
    host.SetUp();
    host.params[1].u.ad.value = 90 << 16;
    host.params[2].u.bd.value = 1;
    host.params[3].u.pd.value = 3;
    host.params[4].u.cd.value = {255, 51, 102, 0};
    host.params[5].u.td.x_value = 10 << 16;
    host.params[5].u.td.y_value = -(1 << 15);
    host.params[6].u.fs_d.value = 0.25;
    host.params[7].u.point3d_d.x_value = 1.5;
    host.params[7].u.point3d_d.z_value = -2.5;
    ASSERT_EQ(host.Send(PF_Cmd_FRAME_SETUP), PF_Err_NONE);
    const auto& values = Engine().values;
    ASSERT_EQ(values.size(), 8u);
    EXPECT_THAT(Floats(values[0]), ElementsAre(90, 0, 0, 0));
    EXPECT_EQ(values[1].Int(0), 1);
    EXPECT_EQ(values[2].Int(0), 3);
    EXPECT_THAT(Floats(values[3]), ElementsAre(51 / 255.0f, 102 / 255.0f, 0, 1));
    EXPECT_THAT(Floats(values[4]), ElementsAre(10, -0.5f, 0, 0));
    EXPECT_THAT(Floats(values[5]), ElementsAre(0.25f, 0, 0, 0));
    EXPECT_THAT(Floats(values[6]), ElementsAre(1.5f, 0, -2.5f, 0));
    EXPECT_THAT(Floats(values[7]), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(host.Unreturned(), "");
}

TEST(ParameterValueTest, ScaleFlagsUndoTheHostsDownsampling) {
    struct Row {
        const char* what;
        Parameter::Type type;
        std::uint32_t flags;
        PF_RationalScale dsx, dsy, par;
        float x, y; // what the host holds
        float expectedX, expectedY;
    };
    const auto F = Parameter::FLOAT;
    const auto P = Parameter::POINT2D;
    const Row rows[] = {
        {"by width", F, Parameter::ScaleByWidth, {1, 2}, {1, 3}, {1, 1}, 100, 0, 50, 0},
        {"by width, pixel aspect cancels", F, Parameter::ScaleByWidth, {1, 2}, {1, 3}, {4, 1}, 100, 0, 50, 0},
        {"by height", F, Parameter::ScaleByHeight, {1, 2}, {1, 4}, {1, 1}, 100, 0, 25, 0},
        {"both",
         F,
         Parameter::ScaleByWidth | Parameter::ScaleByHeight,
         {1, 2},
         {1, 4},
         {1, 1},
         100,
         0,
         12.5,
         0},
        {"slider without a flag", F, Parameter::RemoveScale, {1, 2}, {1, 4}, {1, 1}, 100, 0, 100, 0},
        {"point", P, Parameter::RemoveScale, {1, 2}, {1, 2}, {1, 1}, 10, 20, 20, 40},
        {"point, wide pixels", P, Parameter::RemoveScale, {1, 2}, {1, 4}, {3, 2}, 10, 20, 30, 80},
        {"point without a flag", P, Parameter::ScaleByWidth, {1, 2}, {1, 2}, {1, 1}, 10, 20, 10, 20},
        {"no scale told", P, Parameter::RemoveScale, {0, 0}, {0, 0}, {0, 0}, 10, 20, 10, 20},
    };
    for (const Row& row : rows) {
        FakeHost host;
        Engine().params = {Declared(row.type, row.flags)};
        host.SetUp();
        host.in.downsample_x = row.dsx;
        host.in.downsample_y = row.dsy;
        host.in.pixel_aspect_ratio = row.par;
        if (row.type == F) {
            host.params[1].u.fs_d.value = row.x;
        } else {
            host.params[1].u.td.x_value = static_cast<PF_Fixed>(row.x * 65536);
            host.params[1].u.td.y_value = static_cast<PF_Fixed>(row.y * 65536);
        }
        ASSERT_EQ(host.UserChanged(1), PF_Err_NONE);
        EXPECT_THAT(Floats(Engine().values.at(0)), ElementsAre(row.expectedX, row.expectedY, 0, 0))
            << row.what;
    }
}

TEST(ParameterValueTest, LayersAreUploadedForRendersOnly) {
    FakeHost host;
    Engine().params = {Declared(Parameter::FLOAT), Declared(Parameter::LAYER), Declared(Parameter::TEXTURE),
                       Declared(Parameter::LAYER), Declared(Parameter::PATH)};
    host.SetUp();
    FakeWorld layer(2, 3, 16, 24), frame(2, 2, 8);
    host.params[2].u.ld = layer.world;
    host.params[0].u.ld = frame.world;
    host.formats[layer.world.data] = 0x36316561;
    host.Send(PF_Cmd_FRAME_SETUP);
    EXPECT_EQ(Engine().Count("setParam 0"), 1u);
    EXPECT_EQ(Engine().Count("setParam 1") + Engine().Count("setParam 2") + Engine().Count("setParam 4"), 0u);

    FakeWorld output(2, 2, 8);
    ASSERT_EQ(host.Send(PF_Cmd_RENDER, nullptr, &output.world), PF_Err_NONE);
    ASSERT_EQ(Engine().uploads.size(), 2u) << "one layer and the input; the other layer is empty";
    const RecordingPlugin::Upload& upload = Engine().uploads[0];
    EXPECT_EQ(upload.index, 1u);
    EXPECT_THAT((std::vector<unsigned>{upload.width, upload.height, upload.format}), ElementsAre(2, 3, 16));
    EXPECT_EQ(upload.rowBytes, 24);
    EXPECT_EQ(Engine().values[1].Int(0), 2);
    EXPECT_EQ(Engine().values[3].Int(0), 0);
    EXPECT_EQ(Engine().Count("setParam 4"), 1u);
    EXPECT_EQ(Engine().lockBalance, 0);
}

TEST(ParameterValueTest, IndicesPastTheHostsParametersAreSkipped) {
    FakeHost host;
    Engine().params = {Declared(Parameter::FLOAT), Declared(Parameter::UNKNOWN), Declared(Parameter::FLOAT)};
    host.SetUp();
    // The adapter counts four parameters, the host holds three.
    host.in.num_params = 4;
    ASSERT_EQ(host.Send(PF_Cmd_FRAME_SETUP), PF_Err_NONE);
    EXPECT_THAT(host.log, ElementsAre("checkout_param 1", "checkout_param 2"));
    ASSERT_EQ(host.Send(PF_Cmd_UPDATE_PARAMS_UI), PF_Err_NONE);
    EXPECT_EQ(host.updatedUi.count(3), 0u);
}

TEST(ParameterValueTest, AFailedCheckoutEndsTheWalkSilently) {
    FakeHost host;
    Engine().params = {Declared(Parameter::FLOAT), Declared(Parameter::FLOAT)};
    host.SetUp();
    host.failing["checkout_param"] = 513;
    EXPECT_EQ(host.Send(PF_Cmd_FRAME_SETUP), PF_Err_NONE);
    EXPECT_THAT(host.log, ElementsAre("checkout_param 1"));
    EXPECT_EQ(host.Unreturned(), "");
}

TEST(ParameterValueTest, AMissingColourSuiteIsAnErrorAndLeavesNothingCheckedOut) {
    FakeHost host;
    Engine().params = {Declared(Parameter::COLOR)};
    host.SetUp();
    host.missing.insert("PF ColorParamSuite");
    EXPECT_EQ(host.Send(PF_Cmd_FRAME_SETUP), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(host.Unreturned(), "");
    EXPECT_EQ(Engine().lockBalance, 0);
}

TEST(ParameterUiTest, NothingReachesTheEngineBeforeTheFirstUiPass) {
    FakeHost host;
    Engine().params = {Declared(Parameter::FLOAT)};
    host.Send(PF_Cmd_GLOBAL_SETUP);
    host.Send(PF_Cmd_PARAMS_SETUP);
    host.Send(PF_Cmd_SEQUENCE_SETUP);
    host.UserChanged(1);
    EXPECT_EQ(Engine().Count("setParam 0"), 0u);
    host.Send(PF_Cmd_SEQUENCE_RESETUP);
    EXPECT_THAT(Adapter::s_MapAEParam2Plugin, ElementsAre(Pair(1, 0)));
    host.UserChanged(1);
    EXPECT_EQ(Engine().Count("setParam 0"), 1u);
}

TEST(ParameterUiTest, LabelsAndEnabledStatesFollowTheEngine) {
    for (const auto kind : {FakeHost::Kind::AfterEffects, FakeHost::Kind::Premiere}) {
        FakeHost host(kind);
        Engine().params = {Declared(Parameter::FLOAT, Parameter::NotPublished), Declared(Parameter::FLOAT),
                           Declared(Parameter::BOOL)};
        host.SetUp();
        Engine().params[1].label = std::string(40, 'z');
        Engine().params[1].flags = Parameter::Disabled;
        host.params[2].ui_flags = PF_PUI_DISABLED | PF_PUI_TOPIC;
        ASSERT_EQ(host.Send(PF_Cmd_UPDATE_PARAMS_UI), PF_Err_NONE);
        EXPECT_EQ(Engine().Count("preUIUpdate"), 1u);
        EXPECT_EQ(host.updatedUi[1].ui_flags, PF_PUI_DISABLED);
        EXPECT_EQ(std::string(host.updatedUi[1].PF_DEF_NAME), std::string(31, 'z'));
        EXPECT_EQ(host.updatedUi[2].ui_flags, PF_PUI_TOPIC);
        EXPECT_EQ(host.updatedUi.count(3), 0u);
        EXPECT_EQ(host.out.out_flags, PF_OutFlag_REFRESH_UI);
        EXPECT_EQ(host.params[2].ui_flags, PF_PUI_DISABLED | PF_PUI_TOPIC)
            << "the host's own are not touched";
        EXPECT_EQ(host.Unreturned(), "");
    }
}

TEST(ParameterUiTest, ARefusedUpdateEndsTheUpdatesButNotTheMap) {
    FakeHost host;
    Engine().params = {Declared(Parameter::FLOAT), Declared(Parameter::BOOL)};
    host.failing["PF_UpdateParamUI"] = 1;
    host.SetUp();
    EXPECT_EQ(host.updatedUi.size(), 1u);
    EXPECT_EQ(Adapter::s_MapAEParam2Plugin.size(), 2u);
    FakeHost bare;
    Engine().params = {Declared(Parameter::FLOAT)};
    bare.missing.insert("PF Param Utils Suite");
    bare.SetUp();
    EXPECT_EQ(Adapter::s_MapAEParam2Plugin.size(), 1u);
}

} // namespace
