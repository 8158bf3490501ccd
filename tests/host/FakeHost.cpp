#include "tests/host/FakeHost.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "host/HostState.h"
#include "host/ParamName.h"
#include "tests/host/FakeSuites.h"
#include "tests/support/RecordingPlugin.h"

namespace {

PF_Err CheckoutParam(PF_ProgPtr effect, PF_ParamIndex index, A_long, A_long, A_u_long, PF_ParamDef* def) {
    FakeHost& host = FakeHost::Of(effect);
    host.log.push_back("checkout_param " + std::to_string(index));
    if (host.onCheckoutParam)
        host.onCheckoutParam(host, index);
    if (const PF_Err err = host.Failure("checkout_param"))
        return err;
    *def = host.params.at(static_cast<std::size_t>(index));
    ++host.borrowed["parameter"];
    return PF_Err_NONE;
}

PF_Err CheckinParam(PF_ProgPtr effect, PF_ParamDef*) {
    --FakeHost::Of(effect).borrowed["parameter"];
    return PF_Err_NONE;
}

PF_Err AddParam(PF_ProgPtr effect, PF_ParamIndex index, PF_ParamDefPtr def) {
    FakeHost& host = FakeHost::Of(effect);
    if (index != -1)
        throw std::logic_error("parameters are appended");
    if (static_cast<int>(host.params.size()) == host.failAddParam)
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    host.params.push_back(*def);
    host.choices.push_back(def->param_type == PF_Param_POPUP ? def->u.pd.u.PF_DEF_NAMESPTR : "");
    return PF_Err_NONE;
}

PF_Err RegisterUi(PF_ProgPtr effect, PF_CustomUIInfo* info) {
    FakeHost::Of(effect).customUi = *info;
    return FakeHost::Of(effect).Failure("register_ui");
}

PF_Err GetPlatformData(PF_ProgPtr effect, PF_PlatDataID which, void* data) {
    if (which == PF_PlatData_BUNDLE_REF) {
        if (FakeHost::Of(effect).Failure("bundle"))
            return PF_Err_BAD_CALLBACK_PARAM;
        *static_cast<void**>(data) = data;
    } else if (which == PF_PlatData_RES_FILE_PATH_DEPRECATED) {
        std::strcpy(static_cast<char*>(data), "/plugins/effect");
    }
    return PF_Err_NONE;
}

int HostSprintf(A_char* text, const A_char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsprintf(text, format, arguments);
    va_end(arguments);
    return length;
}

PF_Err Copy(PF_ProgPtr effect, PF_EffectWorld*, PF_EffectWorld*, PF_Rect*, PF_Rect*) {
    FakeHost::Of(effect).log.push_back("copy");
    return FakeHost::Of(effect).Failure("copy");
}

PF_Err Fill(PF_ProgPtr effect, const PF_Pixel* color, const PF_Rect* area, PF_EffectWorld* world) {
    FakeHost& host = FakeHost::Of(effect);
    const PF_Pixel zero = {};
    host.log.push_back(area || (color && std::memcmp(color, &zero, sizeof zero)) ? "odd fill" : "fill");
    if (const PF_Err err = host.Failure("fill"))
        return err;
    for (A_long y = 0; y < world->height; ++y)
        std::memset(reinterpret_cast<char*>(world->data) + y * world->rowbytes, 0,
                    static_cast<std::size_t>(world->width) * 4);
    return PF_Err_NONE;
}

PF_Err CheckoutLayer(PF_ProgPtr effect, PF_ParamIndex index, A_long id, const PF_RenderRequest* request,
                     A_long, A_long, A_u_long, PF_CheckoutResult* result) {
    FakeHost& host = FakeHost::Of(effect);
    if (index != 0)
        throw std::logic_error("only the effect's own layer is checked out");
    host.layerCheckouts.emplace_back(id, *request);
    if (const PF_Err err = host.Failure("checkout_layer"))
        return err;
    result->max_result_rect = host.inputRect;
    return PF_Err_NONE;
}

PF_Err CheckoutPixels(PF_ProgPtr effect, A_long id, PF_EffectWorld** world) {
    FakeHost& host = FakeHost::Of(effect);
    host.log.push_back("checkout_layer_pixels " + std::to_string(id));
    *world = host.inputWorld;
    return host.Failure("checkout_layer_pixels");
}

PF_Err CheckoutOutput(PF_ProgPtr effect, PF_EffectWorld** world) {
    *world = FakeHost::Of(effect).outputWorld;
    return FakeHost::Of(effect).Failure("checkout_output");
}

} // namespace

FakeHost& FakeHost::Of(PF_ProgPtr effect) {
    return *reinterpret_cast<FakeHost*>(effect);
}

FakeHost::FakeHost(Kind kind) {
    RecordingPlugin::Instance().Reset();
    Adapter::s_MapPlugin2AEParam.clear();
    Adapter::s_MapAEParam2Plugin.clear();
    for (A_long* start :
         {&Adapter::s_ParamsStart, &Adapter::s_PointsStart, &Adapter::s_ColorsStart, &Adapter::s_LayersStart,
          &Adapter::s_Points2Start, &Adapter::s_TextureStart, &Adapter::s_PathsStart, &Adapter::s_BoolsStart,
          &Adapter::s_PopupsStart, &Adapter::s_AngleStart, &Adapter::s_HostParamCount})
        *start = 0;
    SetCurrentFakeHost(this);
    params.resize(1);
    choices.resize(1);
    m_Utils.copy = Copy;
    m_Utils.fill = Fill;
    m_Utils.get_platform_data = GetPlatformData;
    m_Utils.ansi.sprintf = HostSprintf;
    m_Utils.ansi.strcpy = std::strcpy;
    in.utils = &m_Utils;
    in.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
    in.inter.checkout_param = CheckoutParam;
    in.inter.checkin_param = CheckinParam;
    in.inter.add_param = AddParam;
    in.inter.register_ui = RegisterUi;
    in.pica_basicP = FakeBasicSuite();
    in.appl_id = kind == Kind::Premiere ? 0x50724D72 : 0x46585443;
    in.version.major = 13;
    in.version.minor = 28;
    in.time_scale = 25;
    in.time_step = 1;
    in.width = 640;
    in.height = 360;
    in.downsample_x = in.downsample_y = in.pixel_aspect_ratio = {1, 1};
}

FakeHost::~FakeHost() {
    for (void** handle : handles) {
        std::free(*handle);
        delete handle;
    }
    SetCurrentFakeHost(nullptr);
}

PF_Err FakeHost::Send(PF_Cmd command, void* extra, PF_LayerDef* output) {
    out = {};
    out.global_data = in.global_data;
    out.sequence_data = in.sequence_data;
    out.frame_data = in.frame_data;
    out.width = in.width;
    out.height = in.height;
    std::vector<PF_ParamDef*> array = Array();
    const bool smart = command == PF_Cmd_SMART_PRE_RENDER || command == PF_Cmd_SMART_RENDER;
    const PF_Err err = EntryPointFunc(command, &in, &out, smart ? nullptr : array.data(), output, extra);
    in.global_data = out.global_data;
    in.sequence_data = out.sequence_data;
    in.frame_data = out.frame_data;
    if (command == PF_Cmd_PARAMS_SETUP)
        in.num_params = static_cast<A_long>(params.size());
    return err;
}

void FakeHost::SetUp() {
    for (const PF_Cmd command :
         {PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP, PF_Cmd_SEQUENCE_SETUP, PF_Cmd_UPDATE_PARAMS_UI})
        if (const PF_Err err = Send(command))
            throw std::runtime_error("set-up: command " + std::to_string(command) + " gave " +
                                     std::to_string(err));
    RecordingPlugin::Instance().calls.clear();
    log.clear();
}

PF_Err FakeHost::UserChanged(A_long index) {
    PF_UserChangedParamExtra extra = {};
    extra.param_index = index;
    return Send(PF_Cmd_USER_CHANGED_PARAM, &extra);
}

PF_Err FakeHost::SmartPreRender() {
    PF_PreRenderCallbacks callbacks = {};
    callbacks.checkout_layer = CheckoutLayer;
    PF_PreRenderExtra extra = {&preRenderInput, &preRenderOutput, &callbacks};
    return Send(PF_Cmd_SMART_PRE_RENDER, &extra);
}

PF_Err FakeHost::SmartRender() {
    PF_SmartRenderInput input = {};
    PF_SmartRenderCallbacks callbacks = {};
    callbacks.checkout_layer_pixels = CheckoutPixels;
    callbacks.checkout_output = CheckoutOutput;
    PF_SmartRenderExtra extra = {&input, &callbacks};
    return Send(PF_Cmd_SMART_RENDER, &extra);
}

std::vector<PF_ParamDef*> FakeHost::Array() {
    std::vector<PF_ParamDef*> array;
    for (PF_ParamDef& def : params)
        array.push_back(&def);
    array.push_back(nullptr);
    return array;
}

PF_Err FakeHost::Failure(const char* callback) const {
    const auto found = failing.find(callback);
    return found != failing.end() ? found->second : static_cast<PF_Err>(PF_Err_NONE);
}

std::string FakeHost::Unreturned() const {
    std::string text;
    for (const auto& [kind, count] : borrowed)
        if (count != 0)
            text += kind + " x " + std::to_string(count) + "; ";
    return text;
}
