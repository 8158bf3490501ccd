#include "AE_EffectSuites.h"
#include "tests/host/TestHost.h"

namespace {

std::vector<float> Floats(const Parameter::Value& value) {
    return {value.Float(0), value.Float(1), value.Float(2), value.Float(3)};
}

TEST(ParameterValueTest, EveryKindReachesTheEngine) {
    TestHost host;
    Instance& instance =
        host.Start({Declared(Parameter::ANGLE), Declared(Parameter::BOOL), Declared(Parameter::POPUP),
                    Declared(Parameter::COLOR), Declared(Parameter::POINT2D), Declared(Parameter::FLOAT),
                    Declared(Parameter::POINT), Declared(Parameter::LAYER), Declared(Parameter::LAYER),
                    Declared(Parameter::TEXTURE), Declared(Parameter::PATH)});
    instance.SetValue(1, 90.0);
    instance.SetValue(2, 1);
    instance.SetValue(3, 3);
    instance.SetValue(4, stricthost::ColorValue{0.25f, 0.5f, 1.5f, 0.75f});
    instance.SetValue(5, stricthost::PointValue{10, -0.5});
    instance.SetValue(6, 0.25);
    instance.SetValue(7, stricthost::Point3DValue{1.5, 3, -2.5});
    instance.SetValue(8, std::make_shared<const Picture>(2, 3, 16));
    const auto& values = Engine().values;
    host.after = [&](Command&) {
        EXPECT_EQ(values.size(), 7u) << "no parameter with pixels while the frame is sized";
        host.after = nullptr;
    };
    ASSERT_EQ(Render(instance).error, PF_Err_NONE);
    ASSERT_EQ(values.size(), 11u);
    EXPECT_THAT(Floats(values[0]), ElementsAre(90, 0, 0, 0));
    EXPECT_EQ(values[1].Int(0), 1);
    EXPECT_EQ(values[2].Int(0), 3);
    EXPECT_THAT(Floats(values[3]), ElementsAre(0.25f, 0.5f, 1.5f, 0.75f));
    EXPECT_THAT(Floats(values[4]), ElementsAre(10, -0.5f, 0, 0));
    EXPECT_THAT(Floats(values[5]), ElementsAre(0.25f, 0, 0, 0));
    EXPECT_THAT(Floats(values[6]), ElementsAre(1.5f, 3, -2.5f, 0));
    EXPECT_EQ(values[7].Int(0), 8) << "one more than the layer's index";
    EXPECT_EQ(values[8].Int(0), 0) << "an empty layer";
    ASSERT_EQ(Engine().uploads.size(), 2u) << "a layer and the input";
    const RecordingPlugin::Upload& upload = Engine().uploads[0];
    EXPECT_THAT((std::vector<unsigned>{upload.index, upload.width, upload.height, upload.format}),
                ElementsAre(7, 2, 3, 16));
    EXPECT_EQ(upload.rowBytes, 2 * 8 + 13) << "the host's padding";
}

constexpr auto F = Parameter::FLOAT, P = Parameter::POINT2D;
constexpr unsigned W = Parameter::ScaleByWidth, H = Parameter::ScaleByHeight, R = Parameter::RemoveScale;

TEST(ParameterValueTest, ScaleFlagsUndoTheHostsDownsampling) {
    struct Row {
        const char* name;
        Parameter::Type type;
        std::uint32_t flags;
        PF_RationalScale downsampleX, downsampleY, aspect;
        float x, y; // what the engine gets when the host has 100, 20
    };
    const Row rows[] = {
        {"slider by width", F, W, {1, 2}, {1, 3}, {1, 1}, 50, 0},
        {"slider by width, wide pixels", F, W, {1, 2}, {1, 3}, {4, 1}, 50, 0},
        {"slider by height", F, H, {1, 2}, {1, 4}, {1, 1}, 25, 0},
        {"slider by both", F, W | H, {1, 2}, {1, 4}, {1, 1}, 12.5, 0},
        {"slider with a scale flag that only points use", F, R, {1, 2}, {1, 4}, {1, 1}, 100, 0},
        {"point", P, R, {1, 2}, {1, 2}, {1, 1}, 200, 40},
        {"point, wide pixels", P, R, {1, 2}, {1, 4}, {3, 2}, 300, 80},
        {"point, den * aspect / num in this order", P, R, {1, 7}, {1, 7}, {1, 1}, 700, 140},
        {"point with a scale flag that only sliders use", P, W, {1, 2}, {1, 2}, {1, 1}, 100, 20},
        {"scales without denominators", P, R, {2, 0}, {2, 0}, {2, 0}, 100, 20},
        {"scales without numerators", P, R, {0, 2}, {0, 2}, {0, 2}, 100, 20},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TestHost host;
        Instance& instance = host.Start({Declared(row.type, row.flags)});
        if (row.type == F)
            instance.SetValue(1, 100.0);
        else
            instance.SetValue(1, stricthost::PointValue{100, 20});
        host.before = [&](Command& command) {
            command.in.downsample_x = row.downsampleX;
            command.in.downsample_y = row.downsampleY;
            command.in.pixel_aspect_ratio = row.aspect;
        };
        ASSERT_EQ(instance.UserChanged(1), PF_Err_NONE);
        EXPECT_THAT(Floats(Engine().values.at(0)), ElementsAre(row.x, row.y, 0, 0));
    }
}

using Checkout = std::vector<A_long>;
std::vector<Checkout> s_Checkouts;

TEST(ParameterValueTest, CheckoutsUseTheTimeOfTheFrameAndStopAtTheFirstRefusal) {
    for (const auto personality : {AE, Plain, Pr}) {
        TestHost host(personality);
        Instance& instance = host.Start({Declared(Parameter::FLOAT), Declared(Parameter::BOOL)});
        s_Checkouts.clear();
        host.before = [](Command& command) {
            command.in.inter.checkout_param = [](PF_ProgPtr, PF_ParamIndex index, A_long time, A_long step,
                                                 A_u_long scale, PF_ParamDef*) -> PF_Err {
                s_Checkouts.push_back({index, time, step, static_cast<A_long>(scale)});
                return PF_Err_BAD_CALLBACK_PARAM;
            };
        };
        FrameSpec request;
        request.time = 30;
        request.timeStep = 2;
        request.timeScale = 24;
        EXPECT_EQ(Render(instance, Picture(2, 2, 8), request).error, PF_Err_NONE);
        const Checkout first = {1, 30, 2, 24};
        EXPECT_THAT(s_Checkouts, ElementsAre(first, first)) << "once for sizing and once for rendering";
    }
}

TEST(ParameterValueTest, OnlyFramesUploadLayers) {
    TestHost host(Plain);
    Instance& instance = host.Start({Declared(Parameter::LAYER)});
    instance.SetValue(1, std::make_shared<const Picture>(2, 3, 8));
    EXPECT_EQ(instance.UpdateUI(), PF_Err_NONE);
    host.after = [](Command& command) {
        if (command.code == PF_Cmd_FRAME_SETUP) {
            EXPECT_EQ(Engine().uploads.size(), 0u);
        }
    };
    EXPECT_EQ(Render(instance).error, PF_Err_NONE);
    EXPECT_EQ(Engine().uploads.size(), 2u) << "the layer and the input";
}

TEST(ParameterValueTest, IndicesOutsideTheHostsParametersAreIgnored) {
    TestHost host;
    Instance& instance = host.Start({Declared(Parameter::FLOAT)});
    for (const A_long index : {0, 2, -1}) {
        Engine().calls.clear();
        host.before = [&](Command& command) {
            static_cast<PF_UserChangedParamExtra*>(command.extra)->param_index = index;
            command.params[0]->param_type = PF_Param_BUTTON;
            command.params[2] = command.params[0]; // hosts put nothing meaningful there
        };
        EXPECT_EQ(instance.UserChanged(1), PF_Err_NONE);
        EXPECT_THAT(Engine().calls, ElementsAre("setSequenceData 1"));
    }
}

TEST(ParameterUiTest, NoValueReachesTheEngineBeforeTheFirstUpdateOfTheControls) {
    TestHost host(AE, [](auto& options) { options.missingSuites = {kPFColorParamSuite}; });
    host.SetUp({Declared(Parameter::COLOR)});
    Instance& instance = host.strict.NewInstance();
    EXPECT_EQ(instance.UserChanged(1), PF_Err_NONE);
    EXPECT_EQ(Render(instance).error, PF_Err_NONE);
    instance.SaveAndReopen();
    for (const PF_Err err : {instance.UserChanged(1), Render(instance).error})
        EXPECT_EQ(err, PF_Err_BAD_CALLBACK_PARAM) << "the colour needs the missing suite";
}

TEST(ParameterUiTest, TheScriptUpdatesTheControlsOfTheRightInstanceBeforeTheHostShowsThem) {
    TestHost host;
    Instance& instance = host.Start({Declared(Parameter::FLOAT)});
    Adapter::SequenceRecord& record = TestHost::Record(instance);
    record.compWidth = 640;
    record.compHeight = 360;
    record.compPixelAspect = 1.5f;
    ASSERT_EQ(instance.UpdateUI(), PF_Err_NONE);
    EXPECT_THAT(Engine().calls, ElementsAre("setSequenceData 1", "setCompositionSize 640 360 1.5",
                                            "getNumParams", "getParamDesc", "getParamDesc", "setParam 0",
                                            "preUIUpdate", "getNumParams", "getParamDesc"));
}

std::vector<PF_ParamIndex> s_Updated;

TEST(ParameterUiTest, ParametersWithoutAControlAreLeftAlone) {
    TestHost host;
    Instance& instance = host.Start({Declared(Parameter::FLOAT), Declared(Parameter::BOOL)});
    Engine().params[0].flags = Parameter::NotPublished;    // hidden later
    Engine().params.push_back(Declared(Parameter::FLOAT)); // made later
    Engine().values.clear();
    s_Updated.clear();
    host.Replace(kPFParamUtilsSuite, &PF_ParamUtilsSuite3::PF_UpdateParamUI,
                 [](PF_ProgPtr, PF_ParamIndex index, const PF_ParamDef*) -> PF_Err {
                     s_Updated.push_back(index);
                     return PF_Err_NONE;
                 });
    EXPECT_EQ(instance.UpdateUI(), PF_Err_NONE);
    EXPECT_THAT(s_Updated, ElementsAre(2));
    EXPECT_EQ(Engine().Count("setParam 0"), 0u);
    EXPECT_EQ(Engine().Count("setParam 1"), 1u);
}

TEST(ParameterUiTest, EveryNumberOfTheParamUtilsSuiteServes) {
    for (const std::int32_t number : {1, 2, 3}) {
        TestHost host;
        host.onlyNumber[kPFParamUtilsSuite] = {number, 3};
        Instance& instance = host.Start({Declared(Parameter::FLOAT)});
        EXPECT_EQ(instance.Label(1), "Label");
        Engine().params[0].label = "Other";
        EXPECT_EQ(instance.UpdateUI(), PF_Err_NONE);
        EXPECT_EQ(instance.Label(1), "Other") << number;
    }
}

TEST(ParameterUiTest, LabelsAndEnabledStatesFollowTheEngine) {
    for (const auto personality : {AE, Pr}) {
        TestHost host(personality);
        Instance& instance = host.Start({Declared(Parameter::FLOAT, Parameter::NotPublished),
                                         Declared(Parameter::FLOAT), Declared(Parameter::BOOL)});
        Engine().params[1].label = std::string(40, 'z');
        Engine().params[1].flags = Parameter::Disabled;
        static constexpr PF_ParamUIFlags s_Own = PF_PUI_DISABLED | PF_PUI_TOPIC;
        host.before = [](Command& command) { command.params[2]->ui_flags = s_Own; };
        host.after = [](Command& command) { EXPECT_EQ(command.params[2]->ui_flags, s_Own); };
        ASSERT_EQ(instance.UpdateUI(), PF_Err_NONE);
        EXPECT_EQ(Engine().Count("preUIUpdate"), 1u);
        EXPECT_EQ(instance.Label(1), std::string(31, 'z'));
        EXPECT_FALSE(instance.IsEnabled(1));
        EXPECT_EQ(instance.Definition(2, PF_InData(), {0, 1}).ui_flags, PF_PUI_TOPIC);
        EXPECT_EQ(instance.LastOutFlags(), PF_OutFlag_REFRESH_UI);
        Engine().params[1].label = "z";
        ASSERT_EQ(instance.UpdateUI(), PF_Err_NONE);
        EXPECT_EQ(instance.Label(1), "z") << "shorter than before";
    }
}

int s_Updates;

TEST(ParameterUiTest, ARefusedUpdateStopsFurtherUpdatesButValuesStillReachTheEngine) {
    for (const char* missing : {"", kPFParamUtilsSuite}) {
        TestHost host(AE, [&](auto& options) { options.missingSuites = {missing}; });
        s_Updates = 0;
        host.Replace(kPFParamUtilsSuite, &PF_ParamUtilsSuite3::PF_UpdateParamUI,
                     [](PF_ProgPtr, PF_ParamIndex, const PF_ParamDef*) -> PF_Err { return ++s_Updates; });
        Instance& instance = host.Start({Declared(Parameter::FLOAT), Declared(Parameter::FLOAT)});
        EXPECT_EQ(s_Updates, *missing ? 0 : 1);
        EXPECT_EQ(Render(instance).error, PF_Err_NONE);
        EXPECT_EQ(Engine().Count("setParam 1"), 2u) << "for sizing and for rendering";
    }
}

} // namespace
