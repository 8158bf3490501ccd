#pragma once

#include <stdint.h>

typedef int32_t csSDK_int32;
typedef uint32_t csSDK_uint32;
typedef csSDK_int32 PrTimelineID;
typedef csSDK_int32 prSuiteError; // 0 is success

// Half open, like every rectangle of the interface.
#if defined(_WIN32)
typedef struct prRect {
    csSDK_int32 left, top, right, bottom;
} prRect;
#else
typedef struct prRect {
    int16_t top, left, bottom, right;
} prRect;
#endif
