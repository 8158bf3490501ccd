#include "tests/stricthost/StandIn.h"

#include <cstring>

#include "PrSDKAESupport.h"

namespace {

StandIn* s_StandIn = nullptr;

// Indexed by command code. Upper case: commands of a frame.
constexpr char s_Letters[] = "ag-xpsrfd-FRDcu--------PS---?";

bool IsPremiere(const Command& c) {
    return c.in->appl_id == 0x50724D72;
}

PF_Err NewData(const Command& c, PF_Handle& data, const char* text) {
    const PF_Handle handle = c.NewHandle(16);
    if (!handle)
        return PF_Err_OUT_OF_MEMORY;
    std::strcpy(*handle, text);
    data = handle;
    return PF_Err_NONE;
}

PF_Err Drop(const Command& c, PF_Handle& data) {
    c.Dispose(data);
    data = nullptr;
    return PF_Err_NONE;
}

PF_Err PreRender(Command& c) {
    const PF_CheckoutResult result = c.CheckOutLayer(1);
    c.Pre().output->result_rect = result.result_rect;
    c.Pre().output->max_result_rect = result.max_result_rect;
    return PF_Err_NONE;
}

PF_Err SmartRender(Command& c) {
    const PF_EffectWorld *input = c.LayerPixels(1), *output = c.Output();
    Invert(*input, *output, static_cast<unsigned>(c.Smart().input->bitdepth));
    return PF_Err_NONE;
}

} // namespace

const void* Command::Acquire(const char* name, int number) const {
    const void* suite = nullptr;
    in->pica_basicP->AcquireSuite(name, number, &suite);
    return suite;
}

PF_Err Command::Add(PF_ParamType type, const char* label, PF_ParamDef def) const {
    def.param_type = type;
    std::strcpy(def.name, label);
    const PF_Err err = in->inter.add_param(in->effect_ref, -1, &def);
    out->num_params += err == PF_Err_NONE;
    return err;
}

std::uint32_t Command::FormatOf(PF_EffectWorld world) const {
    auto premiere = PrPixelFormat_Invalid;
    PF_PixelFormat format = 0;
    if (IsPremiere(*this))
        Borrow<PF_PixelFormatSuite>("PF Pixel Format Suite", 1).GetPixelFormat(&world, &premiere);
    else
        Borrow<PF_WorldSuite2>("PF World Suite", 2).PF_GetPixelFormat(&world, &format);
    return IsPremiere(*this) ? static_cast<std::uint32_t>(premiere) : static_cast<std::uint32_t>(format);
}

PF_CheckoutResult Command::CheckOutLayer(A_long id) const {
    PF_CheckoutResult result = {};
    Pre().cb->checkout_layer(in->effect_ref, 0, id, &Pre().input->output_request, 0, 1, 25, &result);
    return result;
}

PF_EffectWorld* Command::LayerPixels(A_long id) const {
    PF_EffectWorld* world = nullptr;
    Smart().cb->checkout_layer_pixels(in->effect_ref, id, &world);
    return world;
}

PF_EffectWorld* Command::Output() const {
    PF_EffectWorld* world = nullptr;
    Smart().cb->checkout_output(in->effect_ref, &world);
    return world;
}

StandIn::StandIn()
    : formats{{0x62677261, 8},  {0x62677278, 8},  {0x61726762, 8},  {0x62677258, 16},
              {0x62677241, 16}, {0x61726742, 16}, {0x36316561, 16}, {0x62675241, 32},
              {0x62675258, 32}, {0x61724742, 32}, {0x32336561, 32}} {
    s_StandIn = this;
    does = {{PF_Cmd_GLOBAL_SETUP, [this](Command& c) { return GlobalSetup(c); }},
            {PF_Cmd_PARAMS_SETUP, [](Command& c) { return c.Add(PF_Param_FLOAT_SLIDER, "Amount"); }},
            {PF_Cmd_SEQUENCE_SETUP, [](Command& c) { return NewData(c, c.out->sequence_data, "live"); }},
            {PF_Cmd_SEQUENCE_RESETUP, [](Command& c) { return NewData(c, c.out->sequence_data, "again"); }},
            {PF_Cmd_SEQUENCE_FLATTEN, [](Command& c) { return NewData(c, c.out->sequence_data, "flat"); }},
            {PF_Cmd_SEQUENCE_SETDOWN, [](Command& c) { return Drop(c, c.out->sequence_data); }},
            {PF_Cmd_FRAME_SETUP, [](Command& c) { return NewData(c, c.out->frame_data, "frame"); }},
            {PF_Cmd_FRAME_SETDOWN, [](Command& c) { return Drop(c, c.out->frame_data); }},
            {PF_Cmd_RENDER, [this](Command& c) { return Render(c); }},
            {PF_Cmd_SMART_PRE_RENDER, PreRender},
            {PF_Cmd_SMART_RENDER, SmartRender}};
}

PF_Err StandIn::GlobalSetup(Command& c) const {
    c.out->my_version = PF_VERSION(1, 1, 0, 0, 1);
    c.out->out_flags = flags;
    c.out->out_flags2 = flags2;
    if (IsPremiere(c)) {
        const auto& suite = c.Borrow<PF_PixelFormatSuite>("PF Pixel Format Suite", 1);
        suite.ClearSupportedPixelFormats(c.in->effect_ref);
        for (const auto& [format, bits] : formats)
            suite.AddSupportedPixelFormat(c.in->effect_ref, static_cast<PrPixelFormat>(format));
    }
    return NewData(c, c.out->global_data, "global");
}

PF_Err StandIn::Render(Command& c) const {
    EXPECT_STREQ(*c.in->frame_data, "frame");
    for (const auto& [format, bits] : formats)
        if (format == c.FormatOf(*c.output))
            Invert(c.Input(), *c.output, bits);
    return PF_Err_NONE;
}

PF_Err StandIn::Run(Command& c) {
    log += s_Letters[c.code];
    c.out->num_params = 1; // the input
    if (before[c.code])
        before[c.code](c);
    const PF_Err err = does[c.code] ? does[c.code](c) : PF_Err{PF_Err_NONE};
    if (after[c.code])
        after[c.code](c);
    return err;
}

PF_Err StandIn::Entry(PF_Cmd code, PF_InData* in, PF_OutData* out, PF_ParamList params, PF_LayerDef* output,
                      void* extra) {
    Command command = {code, in, out, params, output, extra};
    EXPECT_EQ(in->global_data, out->global_data);
    EXPECT_STREQ(in->global_data ? *in->global_data : "", code == PF_Cmd_GLOBAL_SETUP ? "" : "global");
    return s_StandIn->Run(command);
}

void Invert(const PF_LayerDef& input, const PF_LayerDef& output, unsigned bits) {
    const auto* from = reinterpret_cast<const std::uint8_t*>(input.data);
    auto* to = reinterpret_cast<std::uint8_t*>(output.data);
    const int pixel = static_cast<int>(bits) / 2;
    for (int y = 0; y < output.height; ++y)
        for (int i = 0; i < output.width * pixel; ++i) {
            const bool inside = y < input.height && i < input.width * pixel;
            const int value = inside ? 255 - from[y * input.rowbytes + i] : 0;
            to[y * output.rowbytes + i] = static_cast<std::uint8_t>(value);
        }
}
