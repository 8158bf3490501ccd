#pragma once

#include "AE_EffectCB.h"

typedef A_long AEGP_PluginID;
typedef struct _AEGP_Layer** AEGP_LayerH;
typedef struct _AEGP_Comp** AEGP_CompH;
typedef struct _AEGP_Item** AEGP_ItemH;
typedef struct _AEGP_Effect** AEGP_EffectRefH;
typedef struct _AEGP_LayerRenderOptions** AEGP_LayerRenderOptionsH;
typedef struct _AEGP_FrameReceipt** AEGP_FrameReceiptH;
typedef struct _AEGP_World** AEGP_WorldH;
typedef struct _AEGP_GlobalRefcon* AEGP_GlobalRefcon;
typedef struct _AEGP_CancelRefcon* AEGP_CancelRefcon;
typedef A_Err (*AEGP_RenderSuiteCheckForCancel)(void* refcon, A_Boolean* cancelPB);

// The number of a struct in its name and the number that a host is asked for differ.

#define kAEGPPFInterfaceSuite "AEGP PF Interface Suite"
#define kAEGPPFInterfaceSuiteVersion1 1

typedef struct AEGP_PFInterfaceSuite1 {
    A_Err (*AEGP_GetEffectLayer)(PF_ProgPtr effect_pp_ref, AEGP_LayerH* layerPH);
    // The effect is disposed with AEGP_DisposeEffect.
    A_Err (*AEGP_GetNewEffectForEffect)(AEGP_PluginID aegp_plugin_id, PF_ProgPtr effect_pp_ref,
                                        AEGP_EffectRefH* effect_refPH);
    void* AEGP_ConvertEffectToCompTime;
    void* AEGP_GetEffectCamera;
    void* AEGP_GetEffectCameraMatrix;
} AEGP_PFInterfaceSuite1;

#define kAEGPUtilitySuite "AEGP Utility Suite"
#define kAEGPUtilitySuiteVersion3 7

typedef struct AEGP_UtilitySuite3 {
    void* unused0to6[7];
    A_Err (*AEGP_RegisterWithAEGP)(AEGP_GlobalRefcon global_refcon, const A_char* plugin_nameZ,
                                   AEGP_PluginID* plugin_id);
    void* unused8to24[17];
} AEGP_UtilitySuite3;

#define kAEGPEffectSuite "AEGP Effect Suite"
#define kAEGPEffectSuiteVersion3 3

typedef struct AEGP_EffectSuite3 {
    void* unused0to7[8];
    A_Err (*AEGP_DisposeEffect)(AEGP_EffectRefH effect_refH);
    void* unused9to13[5];
    void* AEGP_GetEffectMatchName;
    void* unused15to16[2];
} AEGP_EffectSuite3;

#define kAEGPLayerSuite "AEGP Layer Suite"
#define kAEGPLayerSuiteVersion5 11

typedef struct AEGP_LayerSuite5 {
    void* unused0to5[6];
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH layerH, AEGP_CompH* compPH);
    void* unused7to45[39];
} AEGP_LayerSuite5;

#define kAEGPCompSuite "AEGP Comp Suite"
#define kAEGPCompSuiteVersion4 9

typedef struct AEGP_CompSuite4 {
    void* AEGP_GetCompFromItem;
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH compH, AEGP_ItemH* itemPH);
    void* unused2to5[4];
    void* AEGP_GetCompFramerate;
    void* unused7to27[21];
} AEGP_CompSuite4;

#define kAEGPItemSuite "AEGP Item Suite"
#define kAEGPItemSuiteVersion6 10

typedef struct AEGP_ItemSuite6 {
    void* unused0to15[16];
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH itemH, A_long* widthPL, A_long* heightPL);
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH itemH, A_Ratio* ratioPRt);
    void* unused18to25[8];
} AEGP_ItemSuite6;

#define kAEGPLayerRenderOptionsSuite "AEGP Layer Render Options Suite"
#define kAEGPLayerRenderOptionsSuiteVersion1 1

typedef struct AEGP_LayerRenderOptionsSuite1 {
    void* AEGP_NewFromLayer;
    A_Err (*AEGP_NewFromUpstreamOfEffect)(AEGP_PluginID plugin_id, AEGP_EffectRefH effectH,
                                          AEGP_LayerRenderOptionsH* optionsPH);
    void* AEGP_Duplicate;
    A_Err (*AEGP_Dispose)(AEGP_LayerRenderOptionsH optionsH);
    A_Err (*AEGP_SetTime)(AEGP_LayerRenderOptionsH optionsH, A_Time time);
    void* unused5to7[3];
    void* AEGP_SetWorldType;
    void* unused9to13[5];
} AEGP_LayerRenderOptionsSuite1;

#define kAEGPRenderSuite "AEGP Render Suite"
#define kAEGPRenderSuiteVersion5 8

typedef struct AEGP_RenderSuite5 {
    void* AEGP_RenderAndCheckoutFrame;
    A_Err (*AEGP_RenderAndCheckoutLayerFrame)(AEGP_LayerRenderOptionsH optionsH,
                                              AEGP_RenderSuiteCheckForCancel cancel_functionP0,
                                              AEGP_CancelRefcon cancel_function_refconP0,
                                              AEGP_FrameReceiptH* receiptPH);
    void* AEGP_RenderAndCheckoutLayerFrame_Async;
    void* AEGP_CancelAsyncRequest;
    A_Err (*AEGP_CheckinFrame)(AEGP_FrameReceiptH receiptH);
    A_Err (*AEGP_GetReceiptWorld)(AEGP_FrameReceiptH receiptH, AEGP_WorldH* worldPH);
    void* unused6to13[8];
} AEGP_RenderSuite5;

#define kAEGPWorldSuite "AEGP World Suite"
#define kAEGPWorldSuiteVersion3 3

typedef struct AEGP_WorldSuite3 {
    void* AEGP_New;
    void* unused1to7[7];
    A_Err (*AEGP_FillOutPFEffectWorld)(AEGP_WorldH worldH, PF_EffectWorld* pf_worldP);
    void* unused9to12[4];
} AEGP_WorldSuite3;

#define kPFEffectSequenceDataSuite "PF Effect Sequence Data Suite"
#define kPFEffectSequenceDataSuiteVersion1 1

typedef struct PF_EffectSequenceDataSuite1 {
    // A read-only view of the data, also while in_data->sequence_data is null.
    PF_Err (*PF_GetConstSequenceData)(PF_ProgPtr effect_ref, PF_ConstHandle* sequence_data);
} PF_EffectSequenceDataSuite1;
