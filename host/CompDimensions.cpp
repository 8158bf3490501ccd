#include "host/CompDimensions.h"

#include "host/Geometry.h"
#include "host/Suites.h"
#include "sdk/PremiereApi.h"

namespace Adapter {

namespace {

void LayerDimensions(const PF_InData& in, unsigned& width, unsigned& height, float& pixelAspect) {
    width = Extent(in.width);
    height = Extent(in.height);
    pixelAspect = 1.0f;
}

AEGP_LayerH FindLayer(const PF_InData& in) {
    ScopedSuite<AEGP_PFInterfaceSuite1> suite(in, {{kAEGPPFInterfaceSuite, kAEGPPFInterfaceSuiteVersion1}});
    AEGP_LayerH layer = nullptr;
    return suite && suite->AEGP_GetEffectLayer(in.effect_ref, &layer) == A_Err_NONE ? layer : nullptr;
}

AEGP_CompH FindComp(const PF_InData& in, AEGP_LayerH layer) {
    ScopedSuite<AEGP_LayerSuite5> suite(in, {{kAEGPLayerSuite, kAEGPLayerSuiteVersion5}});
    AEGP_CompH comp = nullptr;
    return suite && suite->AEGP_GetLayerParentComp(layer, &comp) == A_Err_NONE ? comp : nullptr;
}

AEGP_ItemH FindItem(const PF_InData& in, AEGP_CompH comp) {
    ScopedSuite<AEGP_CompSuite4> suite(in, {{kAEGPCompSuite, kAEGPCompSuiteVersion4}});
    AEGP_ItemH item = nullptr;
    return suite && suite->AEGP_GetItemFromComp(comp, &item) == A_Err_NONE ? item : nullptr;
}

AEGP_ItemH FindCompItem(const PF_InData& in) {
    const AEGP_LayerH layer = FindLayer(in);
    const AEGP_CompH comp = layer ? FindComp(in, layer) : nullptr;
    return comp ? FindItem(in, comp) : nullptr;
}

// The one call that is needed has the same place under every number from 3 on.
bool FindTimeline(const PF_InData& in, PrTimelineID& timeline) {
    const char* name = kPFUtilitySuite;
    ScopedSuite<PF_UtilitySuite> suite(in, {{name, 13},
                                            {name, 12},
                                            {name, 11},
                                            {name, 10},
                                            {name, 9},
                                            {name, 8},
                                            {name, 7},
                                            {name, 6},
                                            {name, 5},
                                            {name, 4},
                                            {name, 3}});
    return suite && suite->GetContainingTimelineID(in.effect_ref, &timeline) == PF_Err_NONE;
}

void ReadSequence(const PrSDKSequenceInfoSuite& suite, PrTimelineID timeline, unsigned& width,
                  unsigned& height, float& pixelAspect) {
    prRect frame = {};
    if (suite.GetFrameRect(timeline, &frame) == 0 && frame.right > frame.left && frame.bottom > frame.top) {
        width = static_cast<unsigned>(frame.right - frame.left);
        height = static_cast<unsigned>(frame.bottom - frame.top);
    }
    csSDK_uint32 numerator = 0, denominator = 0;
    if (suite.GetPixelAspectRatio(timeline, &numerator, &denominator) == 0 && numerator && denominator)
        pixelAspect = static_cast<float>(numerator) / static_cast<float>(denominator);
}

} // namespace

void GetCompDimensions(PF_InData* in, unsigned& width, unsigned& height, float& pixelAspect) {
    LayerDimensions(*in, width, height, pixelAspect);
    const AEGP_ItemH item = FindCompItem(*in);
    ScopedSuite<AEGP_ItemSuite6> suite(*in, {{kAEGPItemSuite, kAEGPItemSuiteVersion6}});
    if (!item || !suite)
        return;
    A_long itemWidth = 0, itemHeight = 0;
    if (suite->AEGP_GetItemDimensions(item, &itemWidth, &itemHeight) == A_Err_NONE && itemWidth > 0 &&
        itemHeight > 0) {
        width = Extent(itemWidth);
        height = Extent(itemHeight);
    }
    A_Ratio aspect = {};
    if (suite->AEGP_GetItemPixelAspectRatio(item, &aspect) == A_Err_NONE && aspect.num > 0 && aspect.den > 0)
        pixelAspect = static_cast<float>(aspect.num) / static_cast<float>(aspect.den);
}

void GetCompDimensionsPr(PF_InData* in, unsigned& width, unsigned& height, float& pixelAspect) {
    LayerDimensions(*in, width, height, pixelAspect);
    PrTimelineID timeline = 0;
    if (!FindTimeline(*in, timeline))
        return;
    // The two calls that are needed have the same places under all three numbers.
    const char* name = kPrSDKSequenceInfoSuite;
    ScopedSuite<PrSDKSequenceInfoSuite> suite(*in, {{name, 9}, {name, 6}, {name, 5}});
    if (suite)
        ReadSequence(*suite, timeline, width, height, pixelAspect);
}

} // namespace Adapter
