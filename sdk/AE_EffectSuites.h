#pragma once

#include "AE_EffectCB.h"

#define kPFColorParamSuite "PF ColorParamSuite"
#define kPFColorParamSuiteVersion1 1

typedef struct PF_ColorParamSuite1 {
    PF_Err (*PF_GetFloatingPointColorFromColorDef)(PF_ProgPtr effect_ref, const PF_ParamDef* color_defP,
                                                   PF_PixelFloat* fp_colorP);
} PF_ColorParamSuite1;

#define kPFParamUtilsSuite "PF Param Utils Suite"
#define kPFParamUtilsSuiteVersion3 3

// The first entry is the same under each of the numbers 1, 2 and 3.
typedef struct PF_ParamUtilsSuite3 {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, const PF_ParamDef* defP);
    void* PF_GetCurrentState;
    void* PF_AreStatesIdentical;
    void* PF_IsIdenticalCheckout;
    void* PF_FindKeyframeTime;
    void* PF_GetKeyframeCount;
    void* PF_CheckoutKeyframe;
    void* PF_CheckinKeyframe;
    void* PF_KeyIndexToTime;
} PF_ParamUtilsSuite3;

#define kPFEffectUISuite "PF Effect UI Suite"
#define kPFEffectUISuiteVersion1 1

typedef struct PF_EffectUISuite1 {
    PF_Err (*PF_SetOptionsButtonName)(PF_ProgPtr effect_ref, const A_char* nameZ);
} PF_EffectUISuite1;
