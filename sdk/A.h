#pragma once

#include <stdint.h>

#include "AEConfig.h"

// Scalars of the interface; sizes are the same on every 64-bit system.
typedef char A_char;
typedef uint8_t A_u_char;
typedef int16_t A_short;
typedef uint16_t A_u_short;
typedef int32_t A_long;
typedef uint32_t A_u_long;
typedef uint64_t A_u_longlong;
typedef float A_FpShort;
typedef double A_FpLong;
typedef uint8_t A_Boolean;
typedef A_long A_Err;
typedef A_long A_Fixed; // 16.16
typedef intptr_t A_intptr_t;
typedef A_u_longlong A_HandleSize;
typedef A_u_short A_UTF16Char;

// A time: value / scale seconds.
typedef struct A_Time {
    A_long value;
    A_u_long scale;
} A_Time;

typedef struct A_Ratio {
    A_long num;
    A_u_long den;
} A_Ratio;

enum {
    A_Err_NONE = 0,
    A_Err_GENERIC = 1,
    A_Err_STRUCT = 2,
    A_Err_PARAMETER = 3,
    A_Err_ALLOC = 4,
    A_Err_MISSING_SUITE = 13,
};
