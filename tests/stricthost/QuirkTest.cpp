#include <fstream>
#include <iterator>
#include <thread>

#include "AE_EffectCBSuites.h"
#include "AE_GeneralPlug.h"
#include "PrSDKAESupport.h"
#include "tests/stricthost/HostTest.h"

namespace {

using stricthost::Quirks;
using testing::ElementsAre;

class QuirkTest : public HostTest {
protected:
    // Starts a host with one quirk.
    Instance& StartWith(bool Quirks::*quirk, Personality personality = Personality::AfterEffectsPlain) {
        m_Options.quirks.*quirk = true;
        m_Options.personality = personality;
        return Start();
    }
};

TEST_F(QuirkTest, EveryQuirkHasAUniqueNameThatEnablesItAloneAndALineInTheDocs) {
    std::ifstream file("docs/hosts.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    for (const stricthost::QuirkRow* row = stricthost::QuirkTable(); row->name; ++row) {
        Quirks quirks;
        EXPECT_TRUE(stricthost::EnableQuirk(quirks, row->name));
        EXPECT_TRUE(quirks.*row->flag);
        EXPECT_EQ(stricthost::QuirkNames(quirks), row->name);
        EXPECT_THAT(page, testing::HasSubstr("| `" + std::string(row->name) + "` |"));
    }
    Quirks quirks;
    EXPECT_FALSE(stricthost::EnableQuirk(quirks, "kindness"));
    EXPECT_EQ(stricthost::QuirkNames(stricthost::QuirksFromSeed(5)),
              stricthost::QuirkNames(stricthost::QuirksFromSeed(5)));
}

TEST_F(QuirkTest, ByteCopiesAreUsedWithoutAnyCommand) {
    Instance& copy = StartWith(&Quirks::byteCopies).Duplicate();
    EXPECT_EQ(m_Plugin.log, "gps");
    EXPECT_EQ(copy.Render(m_Request).picture.bytes, Inverted(m_Input).bytes);
    Finish();
}

TEST_F(QuirkTest, PluginsThatAskForFlatteningAreNeverCopiedAsBytes) {
    m_Plugin.flags |= PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING;
    StartWith(&Quirks::byteCopies).Duplicate();
    EXPECT_EQ(m_Plugin.log, "gpsfrr");
    Finish();
}

TEST_F(QuirkTest, SetdownReceivesFlattenedData) {
    std::string seen;
    m_Plugin.before[PF_Cmd_SEQUENCE_SETDOWN] = [&seen](Command& c) { seen = *c.in->sequence_data; };
    StartWith(&Quirks::flatSetdown).Delete();
    EXPECT_EQ(seen, "flat");
    Finish();
}

TEST_F(QuirkTest, NullResetupCarriesNoData) {
    m_Plugin.before[PF_Cmd_SEQUENCE_RESETUP] = [](Command& c) { EXPECT_EQ(c.in->sequence_data, nullptr); };
    Instance& instance = StartWith(&Quirks::nullResetup);
    instance.Duplicate();
    instance.SaveAndReopen();
    EXPECT_EQ(m_Plugin.log, "gpsrdr");
    Finish();
}

TEST_F(QuirkTest, ResetupRunsOnAnotherThread) {
    std::thread::id seen = std::this_thread::get_id();
    m_Plugin.before[PF_Cmd_SEQUENCE_RESETUP] = [&seen](Command&) { seen = std::this_thread::get_id(); };
    StartWith(&Quirks::resetupThread).Duplicate();
    EXPECT_NE(seen, std::this_thread::get_id());
    Finish();
}

TEST_F(QuirkTest, RenderCopiesHaveTheirOwnData) {
    std::string seen;
    for (const PF_Cmd command : {PF_Cmd_RENDER, PF_Cmd_UPDATE_PARAMS_UI})
        m_Plugin.before[command] = [&seen](Command& c) { seen += std::string(*c.in->sequence_data) + " "; };
    m_Plugin.before[PF_Cmd_SEQUENCE_RESETUP] = [](Command& c) { EXPECT_EQ(c.in->in_flags, 1); };
    Instance& instance = StartWith(&Quirks::renderCopies);
    instance.UpdateUI();
    instance.Render(m_Request);
    instance.Render(m_Request);
    EXPECT_EQ(seen, "live again again ");
    Finish();
    EXPECT_EQ(m_Plugin.log, "gpsurFRDFRDddx");
}

TEST_F(QuirkTest, GetFlattenedLeavesTheLiveDataAlone) {
    m_Plugin.does[PF_Cmd_GET_FLATTENED_SEQUENCE_DATA] = [](Command& c) {
        c.out->sequence_data = c.NewHandle(16);
        std::strcpy(*c.out->sequence_data, "flat copy");
        return PF_Err_NONE;
    };
    std::string seen;
    m_Plugin.before[PF_Cmd_SEQUENCE_RESETUP] = [&seen](Command& c) { seen = *c.in->sequence_data; };
    m_Plugin.flags2 |= PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA;
    StartWith(&Quirks::getFlattened).Duplicate();
    EXPECT_EQ(seen, "flat copy");
    EXPECT_EQ(m_Plugin.log, "gps?r");
    Finish();
}

TEST_F(QuirkTest, FlattenedDataThatIsNoCopyOfItsOwnIsReported) {
    m_Plugin.flags2 |= PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA;
    m_Plugin.does[PF_Cmd_GET_FLATTENED_SEQUENCE_DATA] = [](Command& c) {
        std::strcpy(*c.in->sequence_data, "flat"); // and returns the live handle
        return PF_Err_NONE;
    };
    StartWith(&Quirks::getFlattened).SaveAndReopen();
    m_Host->Finish();
    EXPECT_THAT(m_Host->Violations(),
                ElementsAre("GET_FLATTENED_SEQUENCE_DATA changed sequence data that it may only read",
                            "GET_FLATTENED_SEQUENCE_DATA returned no new handle with a flattened copy"));
}

const char* SharedData(Command& c) {
    PF_ConstHandle data = nullptr;
    EXPECT_EQ(c.Borrow<PF_EffectSequenceDataSuite1>(kPFEffectSequenceDataSuite, 1)
                  .PF_GetConstSequenceData(c.in->effect_ref, &data),
              PF_Err_NONE);
    return data ? static_cast<const char*>(*data) : "";
}

TEST_F(QuirkTest, ThreadedRenderCommandsReadTheirSequenceDataThroughTheSuiteOnly) {
    std::string seen;
    for (const PF_Cmd command : {PF_Cmd_SMART_PRE_RENDER, PF_Cmd_SMART_RENDER, PF_Cmd_UPDATE_PARAMS_UI})
        m_Plugin.before[command] = [&seen](Command& c) {
            seen +=
                std::string(c.in->sequence_data ? *c.in->sequence_data : "null") + "/" + SharedData(c) + " ";
        };
    m_Plugin.flags2 |= PF_OutFlag2_SUPPORTS_THREADED_RENDERING;
    m_Options.quirks.renderCopies = true;
    Instance& instance = StartWith(&Quirks::nullRenderData, Personality::AfterEffects);
    instance.UpdateUI();
    EXPECT_EQ(instance.Render(m_Request).picture.bytes, Inverted(m_Input).bytes);
    EXPECT_EQ(seen, "live/live null/again null/again ");
    EXPECT_TRUE(m_Host->WithholdsData());
    Finish();
    m_Plugin.before[PF_Cmd_SMART_RENDER] = [](Command& c) { const_cast<char*>(SharedData(c))[0] = 'X'; };
    StartWith(&Quirks::nullRenderData, Personality::AfterEffects).Render(m_Request);
    m_Host->Finish();
    EXPECT_THAT(m_Host->Violations(),
                ElementsAre("SMART_RENDER changed sequence data that it may only read"));
    // Premiere Pro has neither the suite nor threads that share an instance.
    m_Plugin.before[PF_Cmd_RENDER] = [](Command& c) {
        EXPECT_NE(c.in->sequence_data, nullptr);
        EXPECT_EQ(c.Acquire(kPFEffectSequenceDataSuite, 1), nullptr);
    };
    StartWith(&Quirks::nullRenderData, Personality::Premiere).Render(m_Request);
    Finish();
}

// Checks the second parameter, a layer, out in smart render; as a layer beforehand when `declared`.
TEST_F(QuirkTest, LayersHavePixelsInSmartRenderOnlyAfterTheirCheckoutAsLayers) {
    for (const bool declared : {false, true}) {
        m_Plugin.after[PF_Cmd_PARAMS_SETUP] = [](Command& c) { c.Add(PF_Param_LAYER, "Layer"); };
        m_Plugin.before[PF_Cmd_SMART_PRE_RENDER] = [declared](Command& c) {
            PF_CheckoutResult result = {};
            if (declared)
                c.Pre().cb->checkout_layer(c.in->effect_ref, 2, 7, &c.Pre().input->output_request, 0, 1, 25,
                                           &result);
        };
        m_Plugin.before[PF_Cmd_SMART_RENDER] = [declared](Command& c) {
            PF_ParamDef def = {};
            EXPECT_EQ(c.CheckOut(2, &def), PF_Err_NONE);
            EXPECT_EQ(def.u.ld.data != nullptr, declared);
            c.CheckIn(&def);
        };
        Instance& instance = StartWith(&Quirks::bareLayers, Personality::AfterEffects);
        instance.SetValue(2, std::make_shared<const fxhost::Picture>(Gradient(6, 2)));
        EXPECT_EQ(instance.Render(m_Request).error, PF_Err_NONE);
        Finish();
    }
}

TEST_F(QuirkTest, PremiereFillsWorldsOfEightBitsOnly) {
    for (const unsigned depth : {8u, 16u}) {
        m_Input = Gradient(4, 2, depth);
        m_Plugin.before[PF_Cmd_RENDER] = [depth](Command& c) {
            const PF_Err expected = depth == 8 ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
            PF_LayerDef input = c.Input();
            EXPECT_EQ(c.Utils().fill(c.in->effect_ref, nullptr, nullptr, c.output), expected);
            EXPECT_EQ(c.Utils().copy(c.in->effect_ref, &input, c.output, nullptr, nullptr), expected);
        };
        StartWith(&Quirks::limitedCopy, Personality::Premiere).Render(m_Request);
        Finish();
    }
}

TEST_F(QuirkTest, OutputSizeIsClearedBeforeFrameSetupAndKeptWhenThePluginLeavesItSo) {
    m_Plugin.before[PF_Cmd_FRAME_SETUP] = [](Command& c) { EXPECT_EQ(c.out->width, 0); };
    EXPECT_EQ(StartWith(&Quirks::clearedOutData).Render(m_Request).picture.bytes, Inverted(m_Input).bytes);
    Finish();
}

TEST_F(QuirkTest, FieldsArriveWithHalfTheRowsAndTwiceTheStrideAndMakeOneFrame) {
    std::vector<Numbers> seen;
    m_Input = Gradient(4, 5);
    m_Plugin.before[PF_Cmd_RENDER] = [&seen](Command& c) {
        seen.push_back({double(c.in->field), double(c.Input().height), double(c.output->height),
                        double(c.output->rowbytes), double(c.in->height)});
    };
    EXPECT_EQ(StartWith(&Quirks::fields, Personality::Premiere).Render(m_Request).picture.bytes,
              Inverted(m_Input).bytes);
    EXPECT_THAT(seen, ElementsAre(Numbers{1, 3, 3, 64, 3}, Numbers{2, 2, 2, 64, 2})); // 16 bytes of padding
    Finish();
}

TEST_F(QuirkTest, NegativeStridesDescribeTheSamePicture) {
    m_Plugin.before[PF_Cmd_RENDER] = [](Command& c) { EXPECT_LT(c.output->rowbytes, 0); };
    EXPECT_EQ(StartWith(&Quirks::negativeStrides, Personality::Premiere).Render(m_Request).picture.bytes,
              Inverted(m_Input).bytes);
    Finish();
}

TEST_F(QuirkTest, HiddenParametersArriveHiddenAndDisabled) {
    PF_ParamUIFlags seen = 0;
    m_Plugin.before[PF_Cmd_UPDATE_PARAMS_UI] = [&seen](Command& c) { seen = c.params[1]->ui_flags; };
    StartWith(&Quirks::hiddenParameters).UpdateUI();
    EXPECT_EQ(seen, PF_PUI_DISABLED | 0x200);
    Finish();
}

TEST_F(QuirkTest, GlobalSetupIsSentTwice) {
    m_Options.quirks.secondGlobalSetup = true;
    StartHost();
    EXPECT_EQ(m_Plugin.log, "ggp");
    Finish();
}

TEST_F(QuirkTest, BundleReferenceReplacesThePaths) {
    int bundle = 0;
    m_Options.bundleReference = &bundle;
    m_Plugin.before[PF_Cmd_GLOBAL_SETUP] = [&bundle](Command& c) {
        void* reference = nullptr;
        char path[AEFX_MAX_PATH] = {};
        EXPECT_EQ(c.Utils().get_platform_data(c.in->effect_ref, 6, &reference), PF_Err_NONE);
        EXPECT_EQ(reference, &bundle);
        EXPECT_NE(c.Utils().get_platform_data(c.in->effect_ref, 2, path), PF_Err_NONE);
    };
    m_Options.pluginPath = "/effects/blur.plugin";
    StartWith(&Quirks::bundleReference);
    Finish();
}

TEST_F(QuirkTest, InterruptionReachesEveryCallbackOfAFrameInTurn) {
    m_Options.personality = Personality::AfterEffects;
    m_Plugin.does[PF_Cmd_SMART_RENDER] = [](Command& c) {
        const PF_EffectWorld *input = c.LayerPixels(1), *output = c.Output();
        if (!input || !output || c.in->inter.abort(c.in->effect_ref) != PF_Err_NONE)
            return PF_Err{PF_Interrupt_CANCEL};
        Invert(*input, *output, 8);
        return PF_Err{PF_Err_NONE};
    };
    for (const auto& [at, error] : std::vector<std::pair<unsigned, PF_Err>>{
             {1, PF_Err_NONE}, {2, 517}, {3, 517}, {4, 517}, {5, PF_Err_NONE}}) {
        m_Options.interruptAt = at; // 1: pre-render ignores that its checkout failed, and promises nothing
        const FrameResult result = Start().Render(m_Request);
        EXPECT_EQ(result.error, error) << at;
        Finish();
    }
}

TEST_F(QuirkTest, CheckoutsOfAnimatedParametersRespectTheTime) {
    Numbers seen;
    m_Plugin.before[PF_Cmd_RENDER] = [&seen](Command& c) {
        for (const A_long time : {0, 30}) {
            PF_ParamDef def = {};
            c.in->inter.checkout_param(c.in->effect_ref, 1, time, 1, 10, &def);
            seen.push_back(def.u.fs_d.value);
            c.CheckIn(&def);
        }
        seen.push_back(c.params[1]->u.fs_d.value);
    };
    Instance& instance = Start();
    instance.Animate(1, [](double seconds) { return seconds * 2; });
    m_Request.time = 50;
    m_Request.timeScale = 25;
    instance.Render(m_Request);
    EXPECT_THAT(seen, ElementsAre(0, 6, 4));
    instance.SetValue(1, 9.0);
    instance.Render(m_Request);
    EXPECT_EQ(seen.back(), 9);
    Finish();
}

} // namespace
