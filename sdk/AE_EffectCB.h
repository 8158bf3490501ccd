#pragma once

#include "AE_Effect.h"

#pragma pack(push, 8)

enum {
    PF_PlatData_EXE_FILE_PATH_DEPRECATED = 1, // char[AEFX_MAX_PATH]
    PF_PlatData_RES_FILE_PATH_DEPRECATED = 2, // char[AEFX_MAX_PATH]
    PF_PlatData_BUNDLE_REF = 6,               // a CFBundleRef, macOS only
    PF_PlatData_EXE_FILE_PATH_W = 7,          // A_UTF16Char[AEFX_MAX_PATH]
    PF_PlatData_RES_FILE_PATH_W = 8,
};

typedef struct PF_ANSICallbacks {
    void* atan;
    void* atan2;
    void* ceil;
    void* cos;
    void* exp;
    void* fabs;
    void* floor;
    void* fmod;
    void* hypot;
    void* log;
    void* log10;
    void* pow;
    void* sin;
    void* sqrt;
    void* tan;
    int (*sprintf)(A_char*, const A_char*, ...);
    A_char* (*strcpy)(A_char*, const A_char*);
    void* asin;
    void* acos;
    A_long ansi_procs[1];
} PF_ANSICallbacks;

typedef struct PF_ColorCallbacks {
    void* RGBtoHLS;
    void* HLStoRGB;
    void* RGBtoYIQ;
    void* YIQtoRGB;
    void* Luminance;
    void* Hue;
    void* Lightness;
    void* Saturation;
} PF_ColorCallbacks;

typedef struct _PF_UtilCallbacks {
    void* begin_sampling;
    void* subpixel_sample;
    void* area_sample;
    void* get_batch_func_is_deprecated;
    void* end_sampling;
    void* composite_rect;
    void* blend;
    void* convolve;
    // Null rectangles mean the whole world, a null colour transparent black. 8 and 16 bits only.
    PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                   PF_Rect* dst_r);
    PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_Rect* dst_rect,
                   PF_EffectWorld* world);
    void* gaussian_kernel;
    void* iterate;
    void* premultiply;
    void* premultiply_color;
    PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_NewWorldFlags flags,
                        PF_EffectWorld* world);
    PF_Err (*dispose_world)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
    void* iterate_origin;
    void* iterate_lut;
    void* transfer_rect;
    void* transform_world;
    PF_Handle (*host_new_handle)(A_u_longlong size);
    void* (*host_lock_handle)(PF_Handle pf_handle);
    void (*host_unlock_handle)(PF_Handle pf_handle);
    void (*host_dispose_handle)(PF_Handle pf_handle);
    void* get_callback_addr;
    void* app;
    PF_ANSICallbacks ansi;
    PF_ColorCallbacks colorCB;
    PF_Err (*get_platform_data)(PF_ProgPtr effect_ref, PF_PlatDataID which, void* data);
    A_u_longlong (*host_get_handle_size)(PF_Handle pf_handle);
    void* iterate_origin_non_clip_src;
    void* iterate_generic;
    PF_Err (*host_resize_handle)(A_u_longlong new_sizeL, PF_Handle* handlePH);
    void* subpixel_sample16;
    void* area_sample16;
    PF_Err (*fill16)(PF_ProgPtr effect_ref, const PF_Pixel16* color, const PF_Rect* dst_rect,
                     PF_EffectWorld* world);
    void* premultiply_color16;
    void* iterate16;
    void* iterate_origin16;
    void* iterate_origin_non_clip_src16;
    void* get_pixel_data8;
    void* get_pixel_data16;
    A_long reserved[1];
} PF_UtilCallbacks;

#pragma pack(pop)
