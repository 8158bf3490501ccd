#pragma once

#include "A.h"

// The first character of a code is its least significant byte.
#define MAKE_PIXEL_FORMAT_FOURCC(c0, c1, c2, c3)                                                             \
    ((A_long)(A_u_long)(c0) | ((A_long)(A_u_long)(c1) << 8) | ((A_long)(A_u_long)(c2) << 16) |               \
     ((A_long)(A_u_long)(c3) << 24))

typedef A_long PF_PixelFormat;
enum {
    PF_PixelFormat_ARGB32 = MAKE_PIXEL_FORMAT_FOURCC('a', 'r', 'g', 'b'),
    PF_PixelFormat_ARGB64 = MAKE_PIXEL_FORMAT_FOURCC('a', 'e', '1', '6'),  // 0..32768
    PF_PixelFormat_ARGB128 = MAKE_PIXEL_FORMAT_FOURCC('a', 'e', '3', '2'), // float
    PF_PixelFormat_INVALID = MAKE_PIXEL_FORMAT_FOURCC('b', 'a', 'd', 'f'),
};
