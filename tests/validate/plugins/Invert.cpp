#include "tests/validate/plugins/Invert.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "AE_EffectCB.h"
#include "AE_EffectCBSuites.h"
#include "PrSDKAESupport.h"

namespace {

constexpr A_long s_Amount = 1; // index of the slider
constexpr A_long s_CheckoutId = 1;
constexpr A_u_long s_Premiere = 0x50724D72; // 'PrMr'
// Pixel formats for Premiere Pro, in order of preference: "bgra", "argb", "Argb", "ARgb".
constexpr std::uint32_t s_Formats[] = {0x61726762, 0x62677261, 0x62677241, 0x62675241};

bool IsPremiere(const PF_InData* in) {
    return static_cast<A_u_long>(in->appl_id) == s_Premiere;
}

// A suite, held for a scope; null when the host lacks it.
template <class Suite>
class Held {
public:
    Held(const PF_InData* in, const char* name, int number) : m_In(in), m_Name(name), m_Number(number) {
        const void* suite = nullptr;
        if (in->pica_basicP->AcquireSuite(name, number, &suite) == 0)
            m_Suite = static_cast<const Suite*>(suite);
    }
    ~Held() {
        if (m_Suite)
            m_In->pica_basicP->ReleaseSuite(m_Name, m_Number);
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    const Suite* operator->() const { return m_Suite; }
    explicit operator bool() const { return m_Suite != nullptr; }

private:
    const PF_InData* m_In;
    const char* m_Name;
    int m_Number;
    const Suite* m_Suite = nullptr;
};

PF_Err GlobalSetup(PF_InData* in, PF_OutData* out) {
    out->my_version = PF_VERSION(1, 0, 0, 0, 1);
    out->out_flags = PF_OutFlag_DEEP_COLOR_AWARE;
    out->out_flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
    if (!IsPremiere(in))
        return PF_Err_NONE;
    const Held<PF_PixelFormatSuite> formats(in, "PF Pixel Format Suite", 1);
    if (!formats)
        return PF_Err_NONE;
    formats->ClearSupportedPixelFormats(in->effect_ref);
    for (const std::uint32_t format : s_Formats)
        formats->AddSupportedPixelFormat(in->effect_ref, static_cast<PrPixelFormat>(format));
    return PF_Err_NONE;
}

PF_Err ParamsSetup(PF_InData* in, PF_OutData* out) {
    PF_ParamDef def = {};
    def.param_type = PF_Param_FLOAT_SLIDER;
    def.uu.id = 1;
    std::strcpy(def.name, "Amount");
    def.u.fs_d.valid_max = def.u.fs_d.slider_max = 100;
    def.u.fs_d.value = def.u.fs_d.dephault = 100;
    const PF_Err err = in->inter.add_param(in->effect_ref, -1, &def);
    out->num_params = 2;
    return err;
}

// Sequence data is a version number, so it survives copying as bytes.
PF_Err MakeData(PF_InData* in, PF_OutData* out) {
    const PF_Handle data = in->utils->host_new_handle(sizeof(A_long));
    if (!data)
        return PF_Err_OUT_OF_MEMORY;
    const A_long version = 1;
    std::memcpy(*data, &version, sizeof version);
    out->sequence_data = data;
    return PF_Err_NONE;
}

PF_Err Resetup(PF_InData* in, PF_OutData* out) {
    out->sequence_data = in->sequence_data;
    return in->sequence_data ? PF_Err{PF_Err_NONE} : MakeData(in, out);
}

PF_Err Setdown(PF_InData* in, PF_OutData* out) {
    if (in->sequence_data)
        in->utils->host_dispose_handle(in->sequence_data);
    out->sequence_data = nullptr;
    return PF_Err_NONE;
}

PF_Err FormatOf(PF_InData* in, PF_EffectWorld* world, std::uint32_t& format) {
    if (IsPremiere(in)) {
        const Held<PF_PixelFormatSuite> formats(in, "PF Pixel Format Suite", 1);
        auto found = PrPixelFormat_Invalid;
        const PF_Err err =
            formats ? formats->GetPixelFormat(world, &found) : PF_Err{PF_Err_BAD_CALLBACK_PARAM};
        format = static_cast<std::uint32_t>(found);
        return err;
    }
    const Held<PF_WorldSuite2> worlds(in, "PF World Suite", 2);
    PF_PixelFormat found = 0;
    const PF_Err err = worlds ? worlds->PF_GetPixelFormat(world, &found) : PF_Err{PF_Err_BAD_CALLBACK_PARAM};
    format = static_cast<std::uint32_t>(found);
    return err;
}

int BitsOf(std::uint32_t format) {
    switch (format) {
    case 0x36316561: // "ae16"
    case 0x62677241: // "Argb"
        return 16;
    case 0x32336561: // "ae32"
    case 0x62675241: // "ARgb"
        return 32;
    default:
        return 8;
    }
}

PF_Err Amount(PF_InData* in, double& amount) {
    PF_ParamDef def = {};
    PF_Err err = in->inter.checkout_param(in->effect_ref, s_Amount, in->current_time, in->time_step,
                                          in->time_scale, &def);
    if (err != PF_Err_NONE)
        return err;
    amount = std::clamp(def.u.fs_d.value / 100.0, 0.0, 1.0);
    return in->inter.checkin_param(in->effect_ref, &def);
}

PF_Err RenderWorlds(PF_InData* in, PF_EffectWorld* input, PF_EffectWorld* output) {
    if (!output || !output->data)
        return PF_Err_NONE;
    double amount = 0;
    std::uint32_t format = 0;
    if (const PF_Err err = Amount(in, amount); err != PF_Err_NONE)
        return err;
    if (const PF_Err err = FormatOf(in, output, format); err != PF_Err_NONE)
        return err;
    return InvertPixels({in, input, output, BitsOf(format), format == 0x61726762 ? 3 : 0, amount});
}

PF_Err PreRender(PF_InData* in, PF_PreRenderExtra* extra) {
    PF_RenderRequest request = extra->input->output_request;
    PF_CheckoutResult result = {};
    const PF_Err err = extra->cb->checkout_layer(in->effect_ref, 0, s_CheckoutId, &request, in->current_time,
                                                 in->time_step, in->time_scale, &result);
    if (err != PF_Err_NONE)
        return err;
    extra->output->result_rect = result.result_rect;
    extra->output->max_result_rect = result.max_result_rect;
    return PF_Err_NONE;
}

PF_Err SmartRender(PF_InData* in, PF_SmartRenderExtra* extra) {
    PF_EffectWorld *input = nullptr, *output = nullptr;
    PF_Err err = extra->cb->checkout_layer_pixels(in->effect_ref, s_CheckoutId, &input);
    if (err == PF_Err_NONE)
        err = extra->cb->checkout_output(in->effect_ref, &output);
    return err == PF_Err_NONE ? RenderWorlds(in, input, output) : err;
}

template <class Channel>
void InvertRow(const InvertJob& job, double white, const char* from, char* to) {
    const auto width = static_cast<std::size_t>(job.output->width);
    const auto inside = from ? std::min(width, static_cast<std::size_t>(job.input->width)) : 0;
    Channel pixel[4];
    for (std::size_t x = 0; x < width; ++x) {
        std::memset(pixel, 0, sizeof pixel);
        if (x < inside)
            std::memcpy(pixel, from + x * sizeof pixel, sizeof pixel);
        for (int c = 0; c < 4 && x < inside; ++c)
            if (c != job.alphaIndex)
                pixel[c] = static_cast<Channel>(pixel[c] + job.amount * (white - 2.0 * pixel[c]));
        std::memcpy(to + x * sizeof pixel, pixel, sizeof pixel);
    }
}

} // namespace

PF_Err InvertPixels(const InvertJob& job) {
    const auto* from = job.input ? reinterpret_cast<const char*>(job.input->data) : nullptr;
    auto* to = reinterpret_cast<char*>(job.output->data);
    for (std::ptrdiff_t y = 0; y < job.output->height; ++y) {
        if (y % 16 == 0)
            if (const PF_Err err = job.in->inter.abort(job.in->effect_ref); err != PF_Err_NONE)
                return err;
        const char* row = from && y < job.input->height ? from + y * job.input->rowbytes : nullptr;
        char* const target = to + y * job.output->rowbytes;
        switch (job.bits) {
        case 8:
            InvertRow<std::uint8_t>(job, 255, row, target);
            break;
        case 16:
            InvertRow<std::uint16_t>(job, 32768, row, target);
            break;
        default:
            InvertRow<float>(job, 1, row, target);
        }
    }
    return PF_Err_NONE;
}

PF_Err InvertMain(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                  void* extra) {
    switch (command) {
    case PF_Cmd_ABOUT:
        std::strcpy(out->return_msg, "Inverts the colours of a layer.");
        return PF_Err_NONE;
    case PF_Cmd_GLOBAL_SETUP:
        return GlobalSetup(in, out);
    case PF_Cmd_PARAMS_SETUP:
        return ParamsSetup(in, out);
    case PF_Cmd_SEQUENCE_SETUP:
        return MakeData(in, out);
    case PF_Cmd_SEQUENCE_RESETUP:
        return Resetup(in, out);
    case PF_Cmd_SEQUENCE_SETDOWN:
        return Setdown(in, out);
    case PF_Cmd_RENDER:
        return RenderWorlds(in, &params[0]->u.ld, output);
    case PF_Cmd_SMART_PRE_RENDER:
        return PreRender(in, static_cast<PF_PreRenderExtra*>(extra));
    case PF_Cmd_SMART_RENDER:
        return SmartRender(in, static_cast<PF_SmartRenderExtra*>(extra));
    default:
        return PF_Err_NONE;
    }
}
