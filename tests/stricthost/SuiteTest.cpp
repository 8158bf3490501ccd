#include "AE_EffectCBSuites.h"
#include "AE_GeneralPlug.h"
#include "PrSDKAESupport.h"
#include "PrSDKSequenceInfoSuite.h"
#include "tests/stricthost/HostTest.h"

namespace {

class SuiteTest : public HostTest {};

TEST_F(SuiteTest, EachPersonalityProvidesItsSuitesExceptTheMissingOnes) {
    const std::vector<std::pair<const char*, int>> suites = {
        {"PF Handle Suite", 2},   {"PF Handle Suite", 1},   {"PF World Suite", 2},
        {"AEGP Render Suite", 8}, {"AEGP Render Suite", 5}, {"PF Pixel Format Suite", 1},
        {"AEGP Item Suite", 10}};
    std::string found;
    m_Plugin.before[PF_Cmd_GLOBAL_SETUP] = [&](Command& c) {
        found.clear();
        for (const auto& [name, number] : suites)
            found += c.Acquire(name, number) ? 'y' : 'n';
    };
    m_Options.missingSuites = {"AEGP Item Suite"};
    StartHost();
    EXPECT_EQ(found, "ynyynnn");
    m_Options.personality = Personality::Premiere;
    StartHost();
    EXPECT_EQ(found, "ynnnnyn");
}

TEST_F(SuiteTest, TheCompositionIsFoundFromTheLayer) {
    m_Plugin.before[PF_Cmd_RENDER] = [](Command& c) {
        AEGP_LayerH layer = nullptr;
        AEGP_CompH comp = nullptr;
        AEGP_ItemH item = nullptr;
        A_long width = 0, height = 0;
        A_Ratio aspect = {};
        c.Borrow<AEGP_PFInterfaceSuite1>("AEGP PF Interface Suite", 1)
            .AEGP_GetEffectLayer(c.in->effect_ref, &layer);
        c.Borrow<AEGP_LayerSuite5>("AEGP Layer Suite", 11).AEGP_GetLayerParentComp(layer, &comp);
        c.Borrow<AEGP_CompSuite4>("AEGP Comp Suite", 9).AEGP_GetItemFromComp(comp, &item);
        const auto& items = c.Borrow<AEGP_ItemSuite6>("AEGP Item Suite", 10);
        items.AEGP_GetItemDimensions(item, &width, &height);
        items.AEGP_GetItemPixelAspectRatio(item, &aspect);
        EXPECT_EQ((Numbers{double(width), double(height), double(aspect.num), double(aspect.den)}),
                  (Numbers{1280, 720, 4, 3}));
    };
    m_Options.compWidth = 1280;
    m_Options.compHeight = 720;
    m_Options.compAspect = {4, 3};
    RenderOnce();
}

TEST_F(SuiteTest, TheSequenceIsFoundFromTheTimeline) {
    m_Plugin.before[PF_Cmd_RENDER] = [](Command& c) {
        PrTimelineID timeline = 0;
        prRect rect = {};
        csSDK_uint32 num = 0, den = 0;
        c.Borrow<PF_UtilitySuite>("PF Utility Suite", 9).GetContainingTimelineID(c.in->effect_ref, &timeline);
        const auto& info = c.Borrow<PrSDKSequenceInfoSuite>("MediaCore Sequence Info Suite", 6);
        EXPECT_EQ(info.GetFrameRect(timeline, &rect), 0);
        EXPECT_EQ(info.GetPixelAspectRatio(timeline, &num, &den), 0);
        EXPECT_EQ((Numbers{double(rect.right), double(rect.bottom), double(num)}),
                  (Numbers{40, 10, 1})); // the layer's
        EXPECT_NE(info.GetFrameRect(timeline + 1, &rect), 0);
    };
    m_Options.personality = Personality::Premiere;
    RenderOnce();
}

// Borrows an earlier frame; gives everything back when `tidy`.
void BorrowFrame(Command& c, bool tidy) {
    AEGP_PluginID id = 0;
    AEGP_EffectRefH effect = nullptr;
    AEGP_LayerRenderOptionsH options = nullptr;
    AEGP_FrameReceiptH receipt = nullptr;
    AEGP_WorldH handle = nullptr;
    PF_EffectWorld world = {};
    const auto& frames = c.Borrow<AEGP_LayerRenderOptionsSuite1>("AEGP Layer Render Options Suite", 1);
    const auto& render = c.Borrow<AEGP_RenderSuite5>("AEGP Render Suite", 8);
    c.Borrow<AEGP_UtilitySuite3>("AEGP Utility Suite", 7).AEGP_RegisterWithAEGP(nullptr, "stand-in", &id);
    c.Borrow<AEGP_PFInterfaceSuite1>("AEGP PF Interface Suite", 1)
        .AEGP_GetNewEffectForEffect(id, c.in->effect_ref, &effect);
    frames.AEGP_NewFromUpstreamOfEffect(id, effect, &options);
    frames.AEGP_SetTime(options, {9, 25});
    EXPECT_EQ(render.AEGP_RenderAndCheckoutLayerFrame(options, nullptr, nullptr, &receipt), A_Err_NONE);
    render.AEGP_GetReceiptWorld(receipt, &handle);
    c.Borrow<AEGP_WorldSuite3>("AEGP World Suite", 3).AEGP_FillOutPFEffectWorld(handle, &world);
    EXPECT_EQ(world.width, 3);
    EXPECT_EQ(*reinterpret_cast<std::uint8_t*>(world.data), 9);
    EXPECT_EQ(c.FormatOf(world), 0x62677261u);
    if (!tidy)
        return;
    render.AEGP_CheckinFrame(receipt);
    frames.AEGP_Dispose(options);
    c.Borrow<AEGP_EffectSuite3>("AEGP Effect Suite", 3).AEGP_DisposeEffect(effect);
}

TEST_F(SuiteTest, UpstreamFrameComesFromTheCallbackAndMustBeGivenBack) {
    m_Options.upstreamFrame = [](A_long value, A_u_long scale) {
        EXPECT_EQ(scale, 25u);
        fxhost::Picture picture(3, 2, 8);
        picture.bytes[0] = static_cast<std::uint8_t>(value);
        return picture;
    };
    m_Plugin.before[PF_Cmd_RENDER] = [](Command& c) { BorrowFrame(c, true); };
    RenderOnce();
    m_Plugin.before[PF_Cmd_RENDER] = [](Command& c) { BorrowFrame(c, false); };
    Start().Render(m_Request);
    m_Host->Finish();
    EXPECT_THAT(m_Host->Violations(),
                testing::UnorderedElementsAre(
                    "effect reference never given back", "layer render options never given back",
                    "frame receipt never given back", "an earlier frame was never disposed of"));
}

TEST_F(SuiteTest, PluginPathIsAvailableAsNarrowAndWideTextOnly) {
    for (const std::string& path : {std::string("/effects/blur.plugin"), std::string(AEFX_MAX_PATH, 'x')}) {
        const bool fits = path.size() < AEFX_MAX_PATH;
        m_Plugin.before[PF_Cmd_GLOBAL_SETUP] = [&](Command& c) {
            char narrow[AEFX_MAX_PATH + 1] = {};
            A_UTF16Char wide[AEFX_MAX_PATH + 1] = {};
            const auto ask = [&c](PF_PlatDataID which, void* data) {
                return c.Utils().get_platform_data(c.in->effect_ref, which, data) == PF_Err_NONE;
            };
            EXPECT_EQ(ask(2, narrow), fits);
            EXPECT_EQ(ask(7, wide), fits);
            EXPECT_FALSE(ask(6, wide));
            EXPECT_EQ(narrow, fits ? path : "");
            EXPECT_EQ(std::string(wide, std::find(wide, std::end(wide), 0)), fits ? path : "");
        };
        m_Options.pluginPath = path;
        StartHost();
    }
}

} // namespace
