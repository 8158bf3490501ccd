#pragma once

#include "AE_Effect.h"

#pragma pack(push, 8)

typedef A_long PF_CustomEventFlags;
typedef A_long PF_UIAlignment;
typedef A_long PF_EventType;
typedef A_long PF_EffectArea;
typedef A_long PF_EventInFlags;
typedef A_long PF_EventOutFlags;

enum { PF_CustomEFlag_NONE = 0, PF_CustomEFlag_EFFECT = 4 };
enum { PF_Event_NONE = -1, PF_Event_DO_CLICK = 2 };
enum { PF_EO_NONE = 0, PF_EO_HANDLED_EVENT = 1 };

typedef struct PF_CustomUIInfo {
    A_long reserved;
    PF_CustomEventFlags events;
    A_long comp_ui_width;
    A_long comp_ui_height;
    PF_UIAlignment comp_ui_alignment;
    A_long layer_ui_width;
    A_long layer_ui_height;
    PF_UIAlignment layer_ui_alignment;
    A_long preview_ui_width;
    A_long preview_ui_height;
    PF_UIAlignment preview_ui_alignment;
} PF_CustomUIInfo;

typedef struct PF_EffectWindowInfo {
    PF_ParamIndex index; // of the parameter under the event
    PF_EffectArea area;
    PF_UnionableRect current_frame;
    PF_UnionableRect param_title_frame;
    A_long horiz_offset;
} PF_EffectWindowInfo;

typedef struct PF_DoClickEventInfo {
    A_u_long when;
    PF_Point screen_point;
    A_long num_clicks;
    A_long modifiers;
    A_intptr_t continue_refcon[4];
    PF_Boolean send_drag;
    PF_Boolean last_time;
} PF_DoClickEventInfo;

typedef union PF_EventUnion {
    PF_DoClickEventInfo do_click; // the largest of them
} PF_EventUnion;

typedef struct PF_EventCallbacks {
    void* refcon;
    void* layer_to_comp;
    void* comp_to_layer;
    void* get_comp2layer_xform;
    void* get_layer2comp_xform;
    void* source_to_frame;
    void* frame_to_source;
    void* info_draw_color;
    void* info_draw_text;
} PF_EventCallbacks;

typedef struct PF_EventExtra {
    struct PF_Context** contextH;
    PF_EventType e_type;
    PF_EventUnion u; // by e_type
    PF_EffectWindowInfo effect_win;
    PF_EventCallbacks cbs;
    PF_EventInFlags evt_in_flags;
    PF_EventOutFlags evt_out_flags;
} PF_EventExtra;

#pragma pack(pop)
