#pragma once

#include "AE_Effect.h"
#include "PrSDKPixelFormat.h"
#include "PrSDKTypes.h"

#define kPFPixelFormatSuite "PF Pixel Format Suite"
#define kPFPixelFormatSuiteVersion1 1

typedef struct PF_PixelFormatSuite {
    PF_Err (*AddSupportedPixelFormat)(PF_ProgPtr effect_ref, PrPixelFormat pixelFormat);
    PF_Err (*ClearSupportedPixelFormats)(PF_ProgPtr effect_ref);
    PF_Err (*NewWorldOfPixelFormat)(PF_ProgPtr effect_ref, A_u_long width, A_u_long height,
                                    PF_NewWorldFlags flags, PrPixelFormat pixelFormat, PF_EffectWorld* world);
    PF_Err (*DisposeWorld)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
    PF_Err (*GetPixelFormat)(PF_EffectWorld* inWorld, PrPixelFormat* pixelFormat);
    void* GetBlackForPixelFormat;
    void* GetWhiteForPixelFormat;
    void* ConvertColorToPixelFormattedData;
} PF_PixelFormatSuite, PF_PixelFormatSuite1;

#define kPFUtilitySuite "PF Utility Suite"

// GetContainingTimelineID has its place from number 3 on; later numbers append.
typedef struct PF_UtilitySuite {
    void* unused0to9[10];
    PF_Err (*GetContainingTimelineID)(PF_ProgPtr effect_ref, PrTimelineID* outTimelineID);
    void* unused11to45[35];
    void* IsTrackItemEffectAppliedToSynthetic;
} PF_UtilitySuite;
