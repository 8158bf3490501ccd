#pragma once

#include "PrSDKTypes.h"

#define kPrSDKSequenceInfoSuite "MediaCore Sequence Info Suite"
#define kPrSDKSequenceInfoSuiteVersion 9

// The first entries are the same under the numbers 5, 6 and 9.
typedef struct PrSDKSequenceInfoSuite {
    prSuiteError (*GetFrameRect)(PrTimelineID inTimelineID, prRect* outFrameRect);
    prSuiteError (*GetPixelAspectRatio)(PrTimelineID inTimelineID, csSDK_uint32* outNumerator,
                                        csSDK_uint32* outDenominator);
    void* unused2to12[11];
} PrSDKSequenceInfoSuite;
