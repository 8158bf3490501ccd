#pragma once

#include "AE_EffectCB.h"

#define kPFHandleSuite "PF Handle Suite"
#define kPFHandleSuiteVersion1 2

// A handle points to a master pointer; locks are balanced.
typedef struct PF_HandleSuite1 {
    PF_Handle (*host_new_handle)(A_HandleSize size);
    void* (*host_lock_handle)(PF_Handle pf_handle);
    void (*host_unlock_handle)(PF_Handle pf_handle);
    void (*host_dispose_handle)(PF_Handle pf_handle);
    A_HandleSize (*host_get_handle_size)(PF_Handle pf_handle);
    PF_Err (*host_resize_handle)(A_HandleSize new_sizeL, PF_Handle* handlePH);
} PF_HandleSuite1;

#define kPFWorldSuite "PF World Suite"
#define kPFWorldSuiteVersion2 2

typedef struct PF_WorldSuite2 {
    PF_Err (*PF_NewWorld)(PF_ProgPtr effect_ref, A_long widthL, A_long heightL, PF_Boolean clear_pixB,
                          PF_PixelFormat pixel_format, PF_EffectWorld* worldP);
    PF_Err (*PF_DisposeWorld)(PF_ProgPtr effect_ref, PF_EffectWorld* worldP);
    PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* worldP, PF_PixelFormat* pixel_formatP);
} PF_WorldSuite2;
