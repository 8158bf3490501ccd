// An effect that shows its layer unchanged and writes every command that it receives, as one line of JSON
// each, to the file that the environment variable FX_TRACE names, or to fx-trace.jsonl in the home folder. It
// needs only the plug-in interface, so it runs in real hosts.
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

#include "sdk/HostApi.h"

namespace {

// One line under construction.
class Line {
public:
    void Add(const char* name, long long value) { AddRaw(name, std::to_string(value)); }
    void Add(const char* name, const PF_RationalScale& scale) {
        AddRaw(name, "\"" + std::to_string(scale.num) + "/" + std::to_string(scale.den) + "\"");
    }
    void AddText(const char* name, const char* text) { AddRaw(name, "\"" + std::string(text) + "\""); }
    void AddFlag(const char* name, bool value) { AddRaw(name, value ? "true" : "false"); }
    std::string Text() const { return "{" + m_Text + "}\n"; }

private:
    void AddRaw(const char* name, const std::string& value) {
        m_Text += (m_Text.empty() ? "\"" : ", \"") + std::string(name) + "\": " + value;
    }
    std::string m_Text;
};

std::mutex s_Mutex;

void Write(const std::string& text) {
    const char* const given = std::getenv("FX_TRACE");
    const char* const home = std::getenv("HOME");
    const std::string path = given ? given : std::string(home ? home : ".") + "/fx-trace.jsonl";
    const std::lock_guard lock(s_Mutex);
    if (std::FILE* file = std::fopen(path.c_str(), "a")) {
        std::fputs(text.c_str(), file);
        std::fclose(file);
    }
}

// Threads are numbered as they appear; 0 is the one of the first command.
int ThreadNumber() {
    static std::atomic<int> count{0};
    thread_local const int s_Number = count++;
    return s_Number;
}

// The number of an instance is its sequence data; copies of the data have the number of their original.
A_long InstanceOf(PF_Handle data) {
    A_long number = 0;
    if (data)
        std::memcpy(&number, *data, sizeof number);
    return number;
}

bool IsFrameCommand(PF_Cmd command) {
    return (command >= PF_Cmd_FRAME_SETUP && command <= PF_Cmd_FRAME_SETDOWN) ||
           command == PF_Cmd_SMART_PRE_RENDER || command == PF_Cmd_SMART_RENDER;
}

void AddFrame(Line& line, const PF_InData& in) {
    line.Add("time", in.current_time);
    line.Add("timeStep", in.time_step);
    line.Add("timeScale", in.time_scale);
    line.Add("width", in.width);
    line.Add("height", in.height);
    line.Add("downsampleX", in.downsample_x);
    line.Add("downsampleY", in.downsample_y);
    line.Add("pixelAspect", in.pixel_aspect_ratio);
    line.Add("field", in.field);
    line.Add("outputOriginX", in.output_origin_x);
    line.Add("outputOriginY", in.output_origin_y);
    line.Add("preEffectOriginX", in.pre_effect_source_origin_x);
    line.Add("preEffectOriginY", in.pre_effect_source_origin_y);
}

void AddWorld(Line& line, const char* name, const PF_LayerDef* world) {
    const std::string prefix = name;
    line.AddFlag((prefix + "Pixels").c_str(), world && world->data);
    line.Add((prefix + "Width").c_str(), world ? world->width : 0);
    line.Add((prefix + "Height").c_str(), world ? world->height : 0);
    line.AddFlag((prefix + "BottomUp").c_str(), world && world->rowbytes < 0);
}

struct Command {
    PF_Cmd code;
    PF_InData* in;
    PF_OutData* out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;
};

// All fields of the command.
void AddInput(Line& line, const Command& c) {
    line.Add("command", c.code);
    line.Add("host", c.in->appl_id);
    line.Add("thread", ThreadNumber());
    line.Add("instance", InstanceOf(c.in->sequence_data));
    line.AddFlag("globalData", c.in->global_data != nullptr);
    line.AddFlag("sequenceData", c.in->sequence_data != nullptr);
    line.AddFlag("frameData", c.in->frame_data != nullptr);
    line.AddFlag("outGlobalData", c.out->global_data != nullptr);
    line.AddFlag("outSequenceData", c.out->sequence_data != nullptr);
    line.Add("outWidth", c.out->width);
    line.Add("outHeight", c.out->height);
    line.Add("numParams", c.in->num_params);
    line.Add("inFlags", c.in->in_flags);
    line.AddFlag("params", c.params != nullptr);
    line.AddFlag("extra", c.extra != nullptr);
    if (!IsFrameCommand(c.code))
        return;
    AddFrame(line, *c.in);
    AddWorld(line, "output", c.output);
    if (c.params)
        AddWorld(line, "input", &c.params[0]->u.ld);
}

PF_Err MakeData(const Command& c) {
    static std::atomic<A_long> instances{0};
    const PF_Handle data = c.in->utils->host_new_handle(16);
    if (!data)
        return PF_Err_OUT_OF_MEMORY;
    std::memset(*data, 0, 16);
    const A_long number = ++instances;
    std::memcpy(*data, &number, sizeof number);
    c.out->sequence_data = data;
    return PF_Err_NONE;
}

PF_Err AddSlider(const Command& c) {
    PF_ParamDef def = {};
    def.param_type = PF_Param_FLOAT_SLIDER;
    def.flags = PF_ParamFlag_SUPERVISE;
    def.uu.id = 1;
    std::strcpy(def.name, "Amount");
    def.u.fs_d.valid_max = def.u.fs_d.slider_max = 100;
    c.out->num_params = 2;
    return c.in->inter.add_param(c.in->effect_ref, -1, &def);
}

PF_Err PreRender(const Command& c, Line& line) {
    auto* extra = static_cast<PF_PreRenderExtra*>(c.extra);
    PF_RenderRequest request = extra->input->output_request;
    line.Add("bits", extra->input->bitdepth);
    line.Add("requestLeft", request.rect.left);
    line.Add("requestTop", request.rect.top);
    line.Add("requestRight", request.rect.right);
    line.Add("requestBottom", request.rect.bottom);
    PF_CheckoutResult result = {};
    const PF_Err err = extra->cb->checkout_layer(c.in->effect_ref, 0, 1, &request, c.in->current_time,
                                                 c.in->time_step, c.in->time_scale, &result);
    if (err == PF_Err_NONE) {
        extra->output->result_rect = result.result_rect;
        extra->output->max_result_rect = result.max_result_rect;
    }
    return err;
}

PF_Err SmartRender(const Command& c, Line& line) {
    auto* extra = static_cast<PF_SmartRenderExtra*>(c.extra);
    PF_EffectWorld *input = nullptr, *output = nullptr;
    line.Add("bits", extra->input->bitdepth);
    PF_Err err = extra->cb->checkout_layer_pixels(c.in->effect_ref, 1, &input);
    if (err == PF_Err_NONE)
        err = extra->cb->checkout_output(c.in->effect_ref, &output);
    AddWorld(line, "checkedOut", input);
    AddWorld(line, "rendered", output);
    if (err != PF_Err_NONE || !input || !output)
        return err;
    return c.in->utils->copy(c.in->effect_ref, input, output, nullptr, nullptr);
}

PF_Err Run(const Command& c, Line& line) {
    switch (c.code) {
    case PF_Cmd_GLOBAL_SETUP:
        c.out->my_version = PF_VERSION(1, 0, 0, 0, 1);
        c.out->out_flags = PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_SEND_UPDATE_PARAMS_UI;
        c.out->out_flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
        return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
        return AddSlider(c);
    case PF_Cmd_SEQUENCE_SETUP:
        return MakeData(c);
    case PF_Cmd_SEQUENCE_RESETUP:
        c.out->sequence_data = c.in->sequence_data;
        return c.in->sequence_data ? PF_Err{PF_Err_NONE} : MakeData(c);
    case PF_Cmd_SEQUENCE_SETDOWN:
        if (c.in->sequence_data)
            c.in->utils->host_dispose_handle(c.in->sequence_data);
        c.out->sequence_data = nullptr;
        return PF_Err_NONE;
    case PF_Cmd_RENDER:
        return c.in->utils->copy(c.in->effect_ref, &c.params[0]->u.ld, c.output, nullptr, nullptr);
    case PF_Cmd_SMART_PRE_RENDER:
        return PreRender(c, line);
    case PF_Cmd_SMART_RENDER:
        return SmartRender(c, line);
    default:
        return PF_Err_NONE;
    }
}

} // namespace

extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(PF_Cmd command, PF_InData* in,
                                                                        PF_OutData* out,
                                                                        PF_ParamDef* params[],
                                                                        PF_LayerDef* output, void* extra) {
    const Command c = {command, in, out, params, output, extra};
    Line line;
    AddInput(line, c);
    const PF_Err err = Run(c, line);
    line.Add("error", err);
    Write(line.Text());
    return err;
}
