#pragma once

#include "A.h"
#include "AE_EffectPixelFormat.h"
#include "AE_EffectVers.h"
#include "SPBasic.h"

#pragma pack(push, 8)

typedef A_long PF_Err;
typedef A_long PF_Cmd;
typedef A_long PF_ParamIndex;
typedef A_long PF_ParamValue;
typedef A_long PF_ParamType;
typedef A_long PF_ParamFlags;
typedef A_long PF_ParamUIFlags;
typedef A_long PF_ChangeFlags;
typedef A_long PF_OutFlags;
typedef A_long PF_OutFlags2;
typedef A_long PF_InFlags;
typedef A_long PF_Quality;
typedef A_long PF_Field;
typedef A_long PF_ModeFlags;
typedef A_long PF_WorldFlags;
typedef A_long PF_NewWorldFlags;
typedef A_long PF_ChannelMask;
typedef A_long PF_GPU_Framework;
typedef A_long PF_PlatDataID;
typedef A_u_long PFVersionInfo;
typedef A_u_long PF_PathID;
typedef A_u_long PF_FSliderFlags;
typedef A_short PF_ValueDisplayFlags;
typedef short PF_RenderOutputFlags;
typedef A_long PF_Fixed; // 16.16
typedef A_u_long PF_UFixed;
typedef A_FpShort PF_FpShort;
typedef A_FpLong PF_FpLong;
#if defined(_WIN32)
typedef void** PF_Handle;
typedef A_char PF_Boolean;
#else
typedef char** PF_Handle;
typedef unsigned char PF_Boolean;
#endif
typedef PF_Handle PF_ArbitraryH;
typedef const void* PF_ConstPtr;
typedef const PF_ConstPtr* PF_ConstHandle;
typedef struct PF_ProgressInfo* PF_ProgPtr;
typedef struct PF_LayerAudioOpaque* PF_LayerAudio;

#define PF_MAX_EFFECT_PARAM_NAME_LEN 31
#define AEFX_AUDIO_DEFAULT_CURVE_TOLERANCE 0.05f
#define PF_MAX_EFFECT_MSG_LEN 255
#define AEFX_MAX_PATH 260
#define AEFX_AUDIO_DEFAULT_CURVE_TOLERANCE 0.05f
#define PF_MAX_CHAN8 255
#define PF_MAX_CHAN16 32768

// build in bits 0-8, stage 9-10, bug fix 11-14, subversion 15-18, version 19-21 and 26-29.
#define PF_VERSION(vers, subvers, bugvers, stage, build)                                                     \
    ((PFVersionInfo)((((A_u_long)(vers) >> 3 & 0xf) << 26) | (((A_u_long)(vers)&7) << 19) |                  \
                     (((A_u_long)(subvers)&0xf) << 15) | (((A_u_long)(bugvers)&0xf) << 11) |                 \
                     (((A_u_long)(stage)&3) << 9) | ((A_u_long)(build)&0x1ff)))

enum {
    PF_Cmd_ABOUT = 0,
    PF_Cmd_GLOBAL_SETUP = 1,
    PF_Cmd_GLOBAL_SETDOWN = 3,
    PF_Cmd_PARAMS_SETUP = 4,
    PF_Cmd_SEQUENCE_SETUP = 5,
    PF_Cmd_SEQUENCE_RESETUP = 6,
    PF_Cmd_SEQUENCE_FLATTEN = 7,
    PF_Cmd_SEQUENCE_SETDOWN = 8,
    PF_Cmd_DO_DIALOG = 9,
    PF_Cmd_FRAME_SETUP = 10,
    PF_Cmd_RENDER = 11,
    PF_Cmd_FRAME_SETDOWN = 12,
    PF_Cmd_USER_CHANGED_PARAM = 13,
    PF_Cmd_UPDATE_PARAMS_UI = 14,
    PF_Cmd_EVENT = 15,
    PF_Cmd_SMART_PRE_RENDER = 23,
    PF_Cmd_SMART_RENDER = 24,
    PF_Cmd_GET_FLATTENED_SEQUENCE_DATA = 28,
    PF_Cmd_NUM_CMDS = 34,
};

enum {
    PF_Err_NONE = 0,
    PF_Err_OUT_OF_MEMORY = 4,
    PF_Err_INTERNAL_STRUCT_DAMAGED = 512,
    PF_Err_INVALID_INDEX = 513,
    PF_Err_UNRECOGNIZED_PARAM_TYPE = 514,
    PF_Err_INVALID_CALLBACK = 515,
    PF_Err_BAD_CALLBACK_PARAM = 516,
    PF_Interrupt_CANCEL = 517,
};

enum {
    PF_OutFlag_KEEP_RESOURCE_OPEN = 0x00000001,
    PF_OutFlag_NON_PARAM_VARY = 0x00000004,
    PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 0x00000010,
    PF_OutFlag_DISPLAY_ERROR_MESSAGE = 0x00000100,
    PF_OutFlag_I_EXPAND_BUFFER = 0x00000200,
    PF_OutFlag_I_SHRINK_BUFFER = 0x00001000,
    PF_OutFlag_CUSTOM_UI = 0x00008000,
    PF_OutFlag_REFRESH_UI = 0x00020000,
    PF_OutFlag_FORCE_RERENDER = 0x00400000,
    PF_OutFlag_DEEP_COLOR_AWARE = 0x02000000,
    PF_OutFlag_SEND_UPDATE_PARAMS_UI = 0x04000000,
};

enum {
    PF_OutFlag2_SUPPORTS_SMART_RENDER = 0x00000400,
    PF_OutFlag2_FLOAT_COLOR_AWARE = 0x00001000,
    PF_OutFlag2_PPRO_DO_NOT_CLONE_SEQUENCE_DATA_FOR_RENDER = 0x00008000,
    PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA = 0x00800000,
    PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 0x08000000,
};

enum {
    PF_Param_LAYER = 0,
    PF_Param_ANGLE = 3,
    PF_Param_CHECKBOX = 4,
    PF_Param_COLOR = 5,
    PF_Param_POINT = 6,
    PF_Param_POPUP = 7,
    PF_Param_FLOAT_SLIDER = 10,
    PF_Param_PATH = 12,
    PF_Param_GROUP_START = 13,
    PF_Param_GROUP_END = 14,
    PF_Param_BUTTON = 15,
    PF_Param_POINT_3D = 18,
};

enum {
    PF_ParamFlag_START_COLLAPSED = 0x20,
    PF_ParamFlag_SUPERVISE = 0x40,
};

enum {
    PF_PUI_NONE = 0,
    PF_PUI_TOPIC = 1,
    PF_PUI_CONTROL = 2,
    PF_PUI_DISABLED = 0x20,
};

enum { PF_ChangeFlag_NONE = 0, PF_ChangeFlag_CHANGED_VALUE = 1 };
enum { PF_LayerDefault_MYSELF = -1, PF_LayerDefault_NONE = 0 };
enum { PF_Quality_LO = 0, PF_Quality_HI = 1 };
enum { PF_Field_FRAME = 0, PF_Field_UPPER = 1, PF_Field_LOWER = 2 };
enum { PF_WorldFlag_DEEP = 1, PF_WorldFlag_WRITEABLE = 2 };
enum { PF_NewWorldFlag_NONE = 0, PF_NewWorldFlag_CLEAR_PIXELS = 1, PF_NewWorldFlag_DEEP_PIXELS = 2 };
enum {
    PF_ChannelMask_ALPHA = 1,
    PF_ChannelMask_RED = 2,
    PF_ChannelMask_GREEN = 4,
    PF_ChannelMask_BLUE = 8,
    PF_ChannelMask_ARGB = 15,
};
enum { PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS = 1 };

typedef struct PF_SpecVersion {
    A_short major;
    A_short minor;
} PF_SpecVersion;

typedef struct PF_Point {
    union {
        A_long x;
        A_long h;
    };
    union {
        A_long y;
        A_long v;
    };
} PF_Point;

// Half open: right and bottom are outside.
typedef struct PF_LRect {
    A_long left;
    A_long top;
    A_long right;
    A_long bottom;
} PF_LRect, PF_Rect, PF_UnionableRect;

typedef struct PF_RationalScale {
    A_long num;
    A_u_long den;
} PF_RationalScale;

// Pixels are straight: colours are not multiplied by alpha.
typedef struct PF_Pixel {
    A_u_char alpha, red, green, blue;
} PF_Pixel, PF_Pixel8, PF_UnionablePixel;

typedef struct PF_Pixel16 {
    A_u_short alpha, red, green, blue; // 0..32768
} PF_Pixel16;

typedef struct PF_PixelFloat {
    PF_FpShort alpha, red, green, blue;
} PF_PixelFloat, PF_Pixel32;

#ifdef PF_DEEP_COLOR_AWARE
typedef struct _PF_PixelOpaque* PF_PixelPtr;
#else
typedef PF_Pixel* PF_PixelPtr;
#endif

typedef struct PF_SoundFormatInfo {
    PF_FpLong rateF;
    A_short num_channels;
    A_short format;
    A_short sample_size;
} PF_SoundFormatInfo;

typedef struct PF_SoundWorld {
    PF_SoundFormatInfo fi;
    A_long num_samples;
    void* dataP;
} PF_SoundWorld;

// A picture: pixel (x, y) is at data + y * rowbytes + x * pixel size, rows from the top.
typedef struct PF_LayerDef {
    void* reserved0;
    void* reserved1;
    PF_WorldFlags world_flags;
    PF_PixelPtr data; // null when a layer parameter has no layer
    A_long rowbytes;
    A_long width;
    A_long height;
    PF_UnionableRect extent_hint;
    void* platform_ref;
    A_long reserved_long1;
    void* reserved_long4;
    PF_RationalScale pix_aspect_ratio;
    void* reserved_long2;
    A_long origin_x;
    A_long origin_y;
    A_long reserved_long3;
    A_long dephault;
} PF_LayerDef, PF_EffectWorld;

typedef struct PF_SliderDef {
    PF_ParamValue value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_ParamValue valid_min, valid_max;
    PF_ParamValue slider_min, slider_max;
    PF_ParamValue dephault;
} PF_SliderDef;

typedef struct PF_FixedSliderDef {
    PF_Fixed value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_Fixed valid_min, valid_max;
    PF_Fixed slider_min, slider_max;
    PF_Fixed dephault;
    A_short precision;
    PF_ValueDisplayFlags display_flags;
} PF_FixedSliderDef;

typedef struct PF_FloatSliderDef {
    PF_FpLong value;
    PF_FpLong phase;
    A_char value_desc[32];
    PF_FpShort valid_min, valid_max;
    PF_FpShort slider_min, slider_max;
    PF_FpShort dephault;
    A_short precision;
    PF_ValueDisplayFlags display_flags;
    PF_FSliderFlags fs_flags;
    PF_FpShort curve_tolerance;
    PF_Boolean useExponent;
    PF_FpShort exponent;
} PF_FloatSliderDef;

typedef struct PF_AngleDef {
    PF_Fixed value; // degrees
    PF_Fixed dephault;
    PF_Fixed valid_min, valid_max;
} PF_AngleDef;

typedef struct PF_CheckBoxDef {
    PF_ParamValue value;
    PF_Boolean dephault;
    A_char reserved;
    A_short reserved1;
    union {
        const A_char* nameptr;
    } u;
} PF_CheckBoxDef;

typedef struct PF_ColorDef {
    PF_UnionablePixel value;
    PF_UnionablePixel dephault;
} PF_ColorDef;

typedef struct PF_PointDef {
    PF_Fixed x_value, y_value; // pixels
    A_char reserved[3];
    PF_Boolean restrict_bounds;
    PF_Fixed x_dephault, y_dephault; // percent of the layer
} PF_PointDef;

typedef struct PF_Point3DDef {
    PF_FpLong x_value, y_value, z_value;          // pixels
    PF_FpLong x_dephault, y_dephault, z_dephault; // percent
    char reserved[16];
} PF_Point3DDef;

typedef struct PF_PopupDef {
    PF_ParamValue value; // from 1
    A_short num_choices;
    A_short dephault;
    union {
        const A_char* namesptr; // separated by |
    } u;
} PF_PopupDef;

typedef struct PF_ButtonDef {
    PF_ParamValue value;
    union {
        const A_char* namesptr;
    } u;
} PF_ButtonDef;

typedef struct PF_PathDef {
    PF_PathID path_id;
    A_long reserved0;
    A_long dephault;
} PF_PathDef;

typedef struct PF_ArbitraryDef {
    A_short id;
    A_short pad;
    PF_ArbitraryH dephault;
    PF_ArbitraryH value;
    void* refconPV;
} PF_ArbitraryDef;

typedef union PF_ParamDefUnion {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FixedSliderDef fd;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PointDef td;
    PF_PopupDef pd;
    PF_FloatSliderDef fs_d;
    PF_ArbitraryDef arb_d;
    PF_PathDef path_d;
    PF_ButtonDef button_d;
    PF_Point3DDef point3d_d;
} PF_ParamDefUnion;

typedef struct PF_ParamDef {
    union {
        A_long id;
        PF_ChangeFlags change_flags;
    } uu;
    PF_ParamUIFlags ui_flags;
    A_short ui_width;
    A_short ui_height;
    PF_ParamType param_type;
    A_char name[32];
    PF_ParamFlags flags;
    A_long unused;
    PF_ParamDefUnion u;
} PF_ParamDef, *PF_ParamDefPtr, **PF_ParamList;

struct PF_CustomUIInfo;

typedef struct PF_InteractCallbacks {
    PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time, A_long time_step,
                             A_u_long time_scale, PF_ParamDef* param);
    PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
    PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDefPtr def); // -1 appends
    PF_Err (*abort)(PF_ProgPtr effect_ref);
    PF_Err (*progress)(PF_ProgPtr effect_ref, A_long current, A_long total);
    PF_Err (*register_ui)(PF_ProgPtr effect_ref, struct PF_CustomUIInfo* cust_info);
    void* checkout_layer_audio;
    void* checkin_layer_audio;
    void* get_audio_data;
    void* reserved_str[3];
    void* reserved[10];
} PF_InteractCallbacks;

struct _PF_UtilCallbacks;

typedef struct PF_InData {
    PF_InteractCallbacks inter;
    struct _PF_UtilCallbacks* utils;
    PF_ProgPtr effect_ref;
    PF_Quality quality;
    PF_SpecVersion version;
    A_long serial_num;
    A_long appl_id;
    A_long num_params;
    A_long reserved;
    A_long what_cpu;
    A_long what_fpu;
    A_long current_time; // in units of 1 / time_scale seconds
    A_long time_step;
    A_long total_time;
    A_long local_time_step;
    A_u_long time_scale;
    PF_Field field;
    PF_Fixed shutter_angle;
    A_long width; // of the layer at full resolution
    A_long height;
    PF_Rect extent_hint;
    A_long output_origin_x;
    A_long output_origin_y;
    PF_RationalScale downsample_x; // 1/2: half resolution
    PF_RationalScale downsample_y;
    PF_RationalScale pixel_aspect_ratio;
    PF_InFlags in_flags;
    PF_Handle global_data;
    PF_Handle sequence_data;
    PF_Handle frame_data;
    A_long start_sampL;
    A_long dur_sampL;
    A_long total_sampL;
    PF_SoundWorld src_snd;
    struct SPBasicSuite* pica_basicP;
    A_long pre_effect_source_origin_x;
    A_long pre_effect_source_origin_y;
    PF_Fixed shutter_phase;
} PF_InData;

typedef struct PF_OutData {
    A_u_long my_version;
    A_char name[32];
    PF_Handle global_data;
    A_long num_params;
    PF_Handle sequence_data;
    A_long flat_sdata_size;
    PF_Handle frame_data;
    A_long width;
    A_long height;
    PF_Point origin;
    PF_OutFlags out_flags;
    A_char return_msg[PF_MAX_EFFECT_MSG_LEN + 1];
    A_long start_sampL;
    A_long dur_sampL;
    PF_SoundWorld dest_snd;
    PF_OutFlags2 out_flags2;
} PF_OutData;

typedef struct PF_UserChangedParamExtra {
    PF_ParamIndex param_index;
} PF_UserChangedParamExtra;

typedef struct PF_RenderRequest {
    PF_LRect rect; // layer coordinates, down-sampled; may be empty
    PF_Field field;
    PF_ChannelMask channel_mask;
    PF_Boolean preserve_rgb_of_zero_alpha;
    char unused[3];
    A_long reserved[4];
} PF_RenderRequest;

typedef struct PF_PreRenderInput {
    PF_RenderRequest output_request;
    short bitdepth;
    const void* gpu_data;
    PF_GPU_Framework what_gpu;
    A_u_long device_index;
} PF_PreRenderInput;

typedef void (*PF_DeletePreRenderDataFunc)(void* pre_render_data);

typedef struct PF_PreRenderOutput {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_Boolean solid;
    PF_Boolean reserved;
    PF_RenderOutputFlags flags;
    void* pre_render_data; // the host's from here on
    PF_DeletePreRenderDataFunc delete_pre_render_data_func;
} PF_PreRenderOutput;

typedef struct PF_CheckoutResult {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_RationalScale par;
    PF_Boolean solid;
    PF_Boolean reservedB[3];
    A_long ref_width;
    A_long ref_height;
    A_long reserved[6];
} PF_CheckoutResult;

typedef struct PF_PreRenderCallbacks {
    PF_Err (*checkout_layer)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long checkout_idL,
                             const PF_RenderRequest* req, A_long what_time, A_long time_step,
                             A_u_long time_scale, PF_CheckoutResult* checkout_result);
    PF_Err (*GuidMixInPtr)(PF_ProgPtr effect_ref, A_u_long buf_sizeLu, const void* buf);
} PF_PreRenderCallbacks;

typedef struct PF_PreRenderExtra {
    PF_PreRenderInput* input;
    PF_PreRenderOutput* output;
    PF_PreRenderCallbacks* cb;
} PF_PreRenderExtra;

typedef struct PF_SmartRenderInput {
    PF_RenderRequest output_request;
    short bitdepth;
    void* pre_render_data;
    const void* gpu_data;
    PF_GPU_Framework what_gpu;
    A_u_long device_index;
} PF_SmartRenderInput;

typedef struct PF_SmartRenderCallbacks {
    PF_Err (*checkout_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL, PF_EffectWorld** pixels);
    PF_Err (*checkin_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL);
    PF_Err (*checkout_output)(PF_ProgPtr effect_ref, PF_EffectWorld** output);
} PF_SmartRenderCallbacks;

typedef struct PF_SmartRenderExtra {
    PF_SmartRenderInput* input;
    PF_SmartRenderCallbacks* cb;
} PF_SmartRenderExtra;

typedef PF_Err (*PF_FilterProc)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamList params,
                                PF_LayerDef* output, void* extra);

#pragma pack(pop)
