#include <gmock/gmock.h>

#include "AE_EffectCBSuites.h"
#include "AE_GeneralPlug.h"
#include "PrSDKAESupport.h"
#include "PrSDKSequenceInfoSuite.h"
#include "tests/stricthost/StandIn.h"

namespace {

using stricthost::Options;
using stricthost::Personality;
using testing::IsEmpty;

template <class Suite>
const Suite& Borrow(Command& c, const char* name, int number) {
    const auto* suite = static_cast<const Suite*>(Acquire(c, name, number));
    EXPECT_NE(suite, nullptr) << name;
    Release(c, name, number); // the tables are static, so the tests may go on
    return *suite;
}

void RenderOnce(Options options) {
    const auto host = SetUpHost(std::move(options));
    const fxhost::Picture input = Gradient(40, 4);
    stricthost::FrameRequest request;
    request.input = &input;
    EXPECT_EQ(host->NewInstance().Render(request).error, PF_Err_NONE);
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

bool Has(Command& c, const char* name, int number) {
    const bool has = Acquire(c, name, number) != nullptr;
    if (has)
        Release(c, name, number);
    return has;
}

TEST(SuiteTest, EachPersonalityHasItsSuitesButTheMissingOnes) {
    for (const bool premiere : {false, true}) {
        StandIn plugin;
        plugin.formats = {0x62677261};
        plugin.before[PF_Cmd_RENDER] = [premiere](Command& c) {
            EXPECT_TRUE(Has(c, "PF Handle Suite", 2));
            EXPECT_FALSE(Has(c, "PF Handle Suite", 1));
            EXPECT_EQ(Has(c, "PF World Suite", 2), !premiere);
            EXPECT_EQ(Has(c, "AEGP Render Suite", 8), !premiere);
            EXPECT_FALSE(Has(c, "AEGP Render Suite", 5));
            EXPECT_EQ(Has(c, "PF Pixel Format Suite", 1), premiere);
            EXPECT_FALSE(Has(c, "AEGP Item Suite", 10)); // taken away
        };
        Options options;
        options.personality = premiere ? Personality::Premiere : Personality::AfterEffectsPlain;
        options.missingSuites = {"AEGP Item Suite"};
        RenderOnce(options);
    }
}

TEST(SuiteTest, TheCompositionIsFoundFromTheLayer) {
    StandIn plugin;
    plugin.before[PF_Cmd_RENDER] = [](Command& c) {
        AEGP_LayerH layer = nullptr;
        AEGP_CompH comp = nullptr;
        AEGP_ItemH item = nullptr;
        A_long width = 0, height = 0;
        A_Ratio aspect = {};
        Borrow<AEGP_PFInterfaceSuite1>(c, "AEGP PF Interface Suite", 1)
            .AEGP_GetEffectLayer(c.in->effect_ref, &layer);
        Borrow<AEGP_LayerSuite5>(c, "AEGP Layer Suite", 11).AEGP_GetLayerParentComp(layer, &comp);
        Borrow<AEGP_CompSuite4>(c, "AEGP Comp Suite", 9).AEGP_GetItemFromComp(comp, &item);
        const auto& items = Borrow<AEGP_ItemSuite6>(c, "AEGP Item Suite", 10);
        items.AEGP_GetItemDimensions(item, &width, &height);
        items.AEGP_GetItemPixelAspectRatio(item, &aspect);
        EXPECT_EQ(width, 1280);
        EXPECT_EQ(height, 720);
        EXPECT_EQ(aspect.num, 4);
        EXPECT_EQ(aspect.den, 3u);
    };
    Options options;
    options.personality = Personality::AfterEffectsPlain;
    options.compWidth = 1280;
    options.compHeight = 720;
    options.compAspect = {4, 3};
    RenderOnce(options);
}

TEST(SuiteTest, TheSequenceIsFoundFromTheTimeline) {
    StandIn plugin;
    plugin.formats = {0x62677261};
    plugin.before[PF_Cmd_RENDER] = [](Command& c) {
        PrTimelineID timeline = 0;
        prRect rect = {};
        csSDK_uint32 num = 0, den = 0;
        Borrow<PF_UtilitySuite>(c, "PF Utility Suite", 9)
            .GetContainingTimelineID(c.in->effect_ref, &timeline);
        const auto& info = Borrow<PrSDKSequenceInfoSuite>(c, "MediaCore Sequence Info Suite", 6);
        EXPECT_EQ(info.GetFrameRect(timeline, &rect), 0);
        EXPECT_EQ(info.GetPixelAspectRatio(timeline, &num, &den), 0);
        EXPECT_EQ(rect.right - rect.left, 40); // the layer's, as nothing else was told
        EXPECT_EQ(rect.bottom - rect.top, 4);
        EXPECT_EQ(num, 1u);
        EXPECT_NE(info.GetFrameRect(timeline + 1, &rect), 0);
    };
    Options options;
    options.personality = Personality::Premiere;
    RenderOnce(options);
}

// Borrows an earlier frame; gives everything back when `tidy`.
void BorrowFrame(Command& c, bool tidy, A_long value) {
    AEGP_PluginID id = 0;
    AEGP_EffectRefH effect = nullptr;
    AEGP_LayerRenderOptionsH options = nullptr;
    AEGP_FrameReceiptH receipt = nullptr;
    AEGP_WorldH handle = nullptr;
    PF_EffectWorld world = {};
    PF_PixelFormat format = 0;
    const auto& optionsSuite = Borrow<AEGP_LayerRenderOptionsSuite1>(c, "AEGP Layer Render Options Suite", 1);
    const auto& render = Borrow<AEGP_RenderSuite5>(c, "AEGP Render Suite", 8);
    Borrow<AEGP_UtilitySuite3>(c, "AEGP Utility Suite", 7).AEGP_RegisterWithAEGP(nullptr, "stand-in", &id);
    Borrow<AEGP_PFInterfaceSuite1>(c, "AEGP PF Interface Suite", 1)
        .AEGP_GetNewEffectForEffect(id, c.in->effect_ref, &effect);
    optionsSuite.AEGP_NewFromUpstreamOfEffect(id, effect, &options);
    optionsSuite.AEGP_SetTime(options, {value, 25});
    EXPECT_EQ(render.AEGP_RenderAndCheckoutLayerFrame(options, nullptr, nullptr, &receipt), A_Err_NONE);
    render.AEGP_GetReceiptWorld(receipt, &handle);
    Borrow<AEGP_WorldSuite3>(c, "AEGP World Suite", 3).AEGP_FillOutPFEffectWorld(handle, &world);
    Borrow<PF_WorldSuite2>(c, "PF World Suite", 2).PF_GetPixelFormat(&world, &format);
    EXPECT_EQ(world.width, 3);
    EXPECT_EQ(*reinterpret_cast<std::uint8_t*>(world.data), value);
    EXPECT_EQ(format, PF_PixelFormat_ARGB32);
    if (!tidy)
        return;
    render.AEGP_CheckinFrame(receipt);
    optionsSuite.AEGP_Dispose(options);
    Borrow<AEGP_EffectSuite3>(c, "AEGP Effect Suite", 3).AEGP_DisposeEffect(effect);
}

TEST(SuiteTest, AnEarlierFrameComesFromTheCallbackAndGoesBack) {
    for (const bool tidy : {true, false}) {
        StandIn plugin;
        plugin.before[PF_Cmd_RENDER] = [tidy](Command& c) { BorrowFrame(c, tidy, 9); };
        Options options;
        options.personality = Personality::AfterEffectsPlain;
        options.upstreamFrame = [](A_long value, A_u_long scale) {
            EXPECT_EQ(scale, 25u);
            fxhost::Picture picture(3, 2, 8);
            picture.bytes[0] = static_cast<std::uint8_t>(value);
            return picture;
        };
        const auto host = SetUpHost(options);
        const fxhost::Picture input = Gradient(40, 4);
        stricthost::FrameRequest request;
        request.input = &input;
        host->NewInstance().Render(request);
        host->Finish();
        if (tidy)
            EXPECT_THAT(host->Violations(), IsEmpty());
        else
            EXPECT_THAT(host->Violations(),
                        testing::UnorderedElementsAre(
                            "effect reference never given back", "layer render options never given back",
                            "frame receipt never given back", "an earlier frame was never disposed of"));
    }
}

TEST(SuiteTest, ThePathIsToldNarrowAndWideAndNoBundleReference) {
    StandIn plugin;
    plugin.before[PF_Cmd_GLOBAL_SETUP] = [](Command& c) {
        char narrow[AEFX_MAX_PATH] = {};
        A_UTF16Char wide[AEFX_MAX_PATH] = {};
        void* bundle = nullptr;
        const auto ask = [&c](PF_PlatDataID which, void* data) {
            return c.in->utils->get_platform_data(c.in->effect_ref, which, data);
        };
        EXPECT_EQ(ask(2, narrow), PF_Err_NONE);
        EXPECT_STREQ(narrow, "/effects/blur.plugin");
        EXPECT_EQ(ask(7, wide), PF_Err_NONE);
        EXPECT_EQ(wide[1], 'e');
        EXPECT_EQ(wide[20], 0);
        EXPECT_NE(ask(6, &bundle), PF_Err_NONE);
        EXPECT_EQ(bundle, nullptr);
    };
    Options options;
    options.pluginPath = "/effects/blur.plugin";
    SetUpHost(options);
}

} // namespace
