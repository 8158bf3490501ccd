#include "tests/stricthost/StandIn.h"

#include <cstring>

#include "AE_EffectUI.h"
#include "PrSDKAESupport.h"

namespace {

StandIn* s_StandIn = nullptr;

// Lower case for what comes once, upper case for what comes with frames.
char LetterOf(PF_Cmd code) {
    switch (code) {
    case PF_Cmd_ABOUT:
        return 'a';
    case PF_Cmd_GLOBAL_SETUP:
        return 'g';
    case PF_Cmd_GLOBAL_SETDOWN:
        return 'x';
    case PF_Cmd_PARAMS_SETUP:
        return 'p';
    case PF_Cmd_SEQUENCE_SETUP:
        return 's';
    case PF_Cmd_SEQUENCE_RESETUP:
        return 'r';
    case PF_Cmd_SEQUENCE_FLATTEN:
        return 'f';
    case PF_Cmd_SEQUENCE_SETDOWN:
        return 'd';
    case PF_Cmd_FRAME_SETUP:
        return 'F';
    case PF_Cmd_RENDER:
        return 'R';
    case PF_Cmd_FRAME_SETDOWN:
        return 'D';
    case PF_Cmd_SMART_PRE_RENDER:
        return 'P';
    case PF_Cmd_SMART_RENDER:
        return 'S';
    case PF_Cmd_UPDATE_PARAMS_UI:
        return 'u';
    case PF_Cmd_USER_CHANGED_PARAM:
        return 'c';
    default:
        return '?';
    }
}

bool IsPremiere(const Command& command) {
    return command.in->appl_id == 0x50724D72;
}

PF_Handle NewData(Command& command, const char* text) {
    PF_Handle handle = Handles(command).host_new_handle(16);
    if (handle)
        std::strcpy(*handle, text);
    return handle;
}

PF_Err GlobalSetup(StandIn& self, Command& command) {
    command.out->my_version = PF_VERSION(1, 1, 0, 0, 1);
    command.out->out_flags = self.flags;
    command.out->out_flags2 = self.flags2;
    command.out->global_data = NewData(command, "global");
    if (IsPremiere(command)) {
        const auto* suite =
            static_cast<const PF_PixelFormatSuite*>(Acquire(command, "PF Pixel Format Suite", 1));
        suite->ClearSupportedPixelFormats(command.in->effect_ref);
        for (const std::uint32_t format : self.formats)
            suite->AddSupportedPixelFormat(command.in->effect_ref, static_cast<PrPixelFormat>(format));
        Release(command, "PF Pixel Format Suite", 1);
    }
    return PF_Err_NONE;
}

PF_Err ParamsSetup(StandIn& self, Command& command) {
    command.out->num_params = 1;
    return self.addParams(command);
}

PF_Err NewSequence(Command& command, const char* text) {
    const PF_Handle data = NewData(command, text);
    if (!data)
        return PF_Err_OUT_OF_MEMORY;
    command.out->sequence_data = data;
    return PF_Err_NONE;
}

PF_Err SequenceSetdown(Command& command) {
    if (command.in->sequence_data)
        Handles(command).host_dispose_handle(command.in->sequence_data);
    command.out->sequence_data = nullptr;
    return PF_Err_NONE;
}

int BitsOf(Command& command, PF_EffectWorld& world) {
    std::uint32_t format = 0;
    if (IsPremiere(command)) {
        const auto* suite =
            static_cast<const PF_PixelFormatSuite*>(Acquire(command, "PF Pixel Format Suite", 1));
        auto code = PrPixelFormat_Invalid;
        suite->GetPixelFormat(&world, &code);
        Release(command, "PF Pixel Format Suite", 1);
        format = static_cast<std::uint32_t>(code);
    } else {
        const auto* suite = static_cast<const PF_WorldSuite2*>(Acquire(command, "PF World Suite", 2));
        PF_PixelFormat code = 0;
        suite->PF_GetPixelFormat(&world, &code);
        Release(command, "PF World Suite", 2);
        format = static_cast<std::uint32_t>(code);
    }
    switch (format) {
    case 0x62677261:
    case 0x62677278:
        return 8;
    case 0x36316561:
    case 0x62677258:
    case 0x62677241:
        return 16;
    default:
        return 32;
    }
}

PF_Err Render(Command& command) {
    Invert(command.params[0]->u.ld, *command.output, BitsOf(command, *command.output));
    return PF_Err_NONE;
}

PF_Err PreRender(Command& command) {
    auto* extra = static_cast<PF_PreRenderExtra*>(command.extra);
    const PF_RenderRequest request = extra->input->output_request;
    PF_CheckoutResult result = {};
    const PF_Err err = extra->cb->checkout_layer(command.in->effect_ref, 0, 1, &request, 0, 1, 25, &result);
    extra->output->result_rect = result.result_rect;
    extra->output->max_result_rect = result.max_result_rect;
    return err;
}

PF_Err SmartRender(Command& command) {
    auto* extra = static_cast<PF_SmartRenderExtra*>(command.extra);
    PF_EffectWorld *input = nullptr, *output = nullptr;
    if (const PF_Err err = extra->cb->checkout_layer_pixels(command.in->effect_ref, 1, &input))
        return err;
    if (const PF_Err err = extra->cb->checkout_output(command.in->effect_ref, &output))
        return err;
    if (input && output)
        Invert(*input, *output, extra->input->bitdepth);
    return PF_Err_NONE;
}

template <class Channel>
void InvertAs(const PF_LayerDef& input, const PF_LayerDef& output, Channel white) {
    const auto* from = reinterpret_cast<const char*>(input.data);
    auto* to = reinterpret_cast<char*>(output.data);
    for (int y = 0; y < output.height; ++y)
        for (std::size_t i = 0; i < static_cast<std::size_t>(output.width) * 4; ++i) {
            Channel value = 0;
            if (y < input.height && i < static_cast<std::size_t>(input.width) * 4)
                std::memcpy(&value, from + y * input.rowbytes + i * sizeof value, sizeof value);
            value = static_cast<Channel>(white - value);
            std::memcpy(to + y * output.rowbytes + i * sizeof value, &value, sizeof value);
        }
}

} // namespace

StandIn::StandIn() {
    s_StandIn = this;
    addParams = [](Command& command) {
        PF_ParamDef def = MakeParam(PF_Param_FLOAT_SLIDER, "Amount");
        def.u.fs_d.valid_max = def.u.fs_d.slider_max = 10;
        def.u.fs_d.dephault = 2.5f;
        return AddParam(command, def);
    };
}

StandIn::~StandIn() {
    s_StandIn = nullptr;
}

PF_Err StandIn::Run(Command& command) {
    switch (command.code) {
    case PF_Cmd_ABOUT:
        std::strcpy(command.out->return_msg, "Stand-in");
        return PF_Err_NONE;
    case PF_Cmd_GLOBAL_SETUP:
        return GlobalSetup(*this, command);
    case PF_Cmd_PARAMS_SETUP:
        return ParamsSetup(*this, command);
    case PF_Cmd_SEQUENCE_SETUP:
        return NewSequence(command, "live");
    case PF_Cmd_SEQUENCE_RESETUP:
        return NewSequence(command, command.in->sequence_data ? *command.in->sequence_data : "none");
    case PF_Cmd_SEQUENCE_FLATTEN:
        return NewSequence(command, "flat");
    case PF_Cmd_SEQUENCE_SETDOWN:
        return SequenceSetdown(command);
    case PF_Cmd_RENDER:
        return Render(command);
    case PF_Cmd_SMART_PRE_RENDER:
        return PreRender(command);
    case PF_Cmd_SMART_RENDER:
        return SmartRender(command);
    default:
        return PF_Err_NONE;
    }
}

PF_Err StandIn::Entry(PF_Cmd code, PF_InData* in, PF_OutData* out, PF_ParamList params, PF_LayerDef* output,
                      void* extra) {
    Command command = {code, in, out, params, output, extra};
    {
        const std::lock_guard lock(s_StandIn->m_Mutex);
        s_StandIn->log += LetterOf(code);
    }
    if (const auto found = s_StandIn->instead.find(code); found != s_StandIn->instead.end())
        return found->second(command);
    if (const auto found = s_StandIn->before.find(code); found != s_StandIn->before.end())
        found->second(command);
    const PF_Err err = s_StandIn->Run(command);
    if (const auto found = s_StandIn->after.find(code); found != s_StandIn->after.end())
        found->second(command);
    return err;
}

PF_ParamDef MakeParam(PF_ParamType type, const char* label) {
    PF_ParamDef def = {};
    def.param_type = type;
    std::strcpy(def.name, label);
    return def;
}

PF_Err AddParam(Command& command, PF_ParamDef def) {
    const PF_Err err = command.in->inter.add_param(command.in->effect_ref, -1, &def);
    if (err == PF_Err_NONE)
        ++command.out->num_params;
    return err;
}

const PF_HandleSuite1& Handles(Command& command) {
    static PF_HandleSuite1 s_Suite; // the same functions at every call
    const _PF_UtilCallbacks& utils = *command.in->utils;
    static std::once_flag s_Once;
    std::call_once(s_Once, [&utils] {
        s_Suite = {utils.host_new_handle,     utils.host_lock_handle,     utils.host_unlock_handle,
                   utils.host_dispose_handle, utils.host_get_handle_size, utils.host_resize_handle};
    });
    return s_Suite;
}

const void* Acquire(Command& command, const char* name, int number) {
    const void* suite = nullptr;
    command.in->pica_basicP->AcquireSuite(name, number, &suite);
    return suite;
}

void Release(Command& command, const char* name, int number) {
    command.in->pica_basicP->ReleaseSuite(name, number);
}

void Invert(const PF_LayerDef& input, const PF_LayerDef& output, int bits) {
    if (bits == 8)
        InvertAs<std::uint8_t>(input, output, 255);
    else if (bits == 16)
        InvertAs<std::uint16_t>(input, output, 32768);
    else
        InvertAs<float>(input, output, 1.0f);
}

fxhost::Picture Gradient(unsigned width, unsigned height, unsigned depth) {
    fxhost::Picture picture(width, height, depth);
    for (std::size_t i = 0; i < picture.bytes.size() * 8 / depth; ++i) {
        const auto byte = static_cast<std::uint8_t>(i * 7 % 251);
        const auto word = static_cast<std::uint16_t>(i * 131 % 32769);
        const float number = static_cast<float>(i % 1000) / 1000.0f;
        const void* value = depth == 8    ? static_cast<const void*>(&byte)
                            : depth == 16 ? &word
                                          : static_cast<const void*>(&number);
        std::memcpy(picture.bytes.data() + i * depth / 8, value, depth / 8);
    }
    return picture;
}

fxhost::Picture Inverted(const fxhost::Picture& picture) {
    fxhost::Picture result = picture;
    PF_LayerDef world = {};
    world.width = static_cast<A_long>(picture.width);
    world.height = static_cast<A_long>(picture.height);
    world.rowbytes = static_cast<A_long>(picture.RowBytes());
    world.data = reinterpret_cast<PF_PixelPtr>(result.bytes.data());
    Invert(world, world, static_cast<int>(picture.depth));
    return result;
}

std::unique_ptr<stricthost::StrictHost> SetUpHost(stricthost::Options options) {
    auto host = std::make_unique<stricthost::StrictHost>(StandIn::Entry, std::move(options));
    host->GlobalSetup();
    host->ParamsSetup();
    return host;
}
