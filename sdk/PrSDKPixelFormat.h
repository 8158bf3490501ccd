#pragma once

#include "AE_EffectPixelFormat.h"

typedef enum PrPixelFormat : A_u_long {
    PrPixelFormat_BGRA_4444_8u = 0x61726762,
    PrPixelFormat_BGRA_4444_16u = 0x61726742,
    PrPixelFormat_BGRA_4444_32f = 0x61724742,
    PrPixelFormat_ARGB_4444_8u = 0x62677261,
    PrPixelFormat_Invalid = 0x66646162,
} PrPixelFormat;
