#include <cstring>

#include "AE_EffectCBSuites.h"
#include "AE_EffectSuites.h"
#include "stricthost/Call.h"
#include "stricthost/HandleCallbacks.h"
#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/PixelFormats.h"
#include "stricthost/SuiteTable.h"

namespace stricthost {

namespace {

PF_Handle NewHandle(A_HandleSize size) {
    Call* call = Call::Require("host_new_handle");
    return call ? call->host.handles.New(static_cast<std::size_t>(size), call->Name()) : nullptr;
}

void* LockHandle(PF_Handle handle) {
    Call* call = Call::Require("host_lock_handle");
    void* data = call ? call->host.handles.Lock(handle, call->Name()) : nullptr;
    if (data)
        ++call->locks[handle];
    return data;
}

void UnlockHandle(PF_Handle handle) {
    Call* call = Call::Require("host_unlock_handle");
    if (!call)
        return;
    call->host.handles.Unlock(handle, call->Name());
    --call->locks[handle];
}

void DisposeHandle(PF_Handle handle) {
    Call* call = Call::Require("host_dispose_handle");
    if (!call)
        return;
    if (call->host.handles.Locks(handle) > 0)
        call->Report("disposed of a handle that it had locked");
    call->host.handles.Dispose(handle, call->Name());
}

A_HandleSize HandleSize(PF_Handle handle) {
    Call* call = Call::Require("host_get_handle_size");
    return call ? call->host.handles.Size(handle, call->Name()) : 0;
}

PF_Err ResizeHandle(A_HandleSize size, PF_Handle* handle) {
    Call* call = Call::Require("host_resize_handle");
    return call ? call->host.handles.Resize(handle, static_cast<std::size_t>(size), call->Name())
                : static_cast<PF_Err>(PF_Err_BAD_CALLBACK_PARAM);
}

PF_Err WorldFormat(const PF_EffectWorld* def, PF_PixelFormat* format) {
    Call* call = Call::Require("PF_GetPixelFormat");
    const World* world = call ? call->host.worlds.Find(def) : nullptr;
    if (call && !world)
        call->Report("asked for the pixel format of a world that does not exist");
    if (!world || !format)
        return PF_Err_BAD_CALLBACK_PARAM;
    *format = static_cast<PF_PixelFormat>(world->Format());
    return PF_Err_NONE;
}

PF_Err FloatColor(PF_ProgPtr effect, const PF_ParamDef* def, PF_PixelFloat* color) {
    Call* call = Call::From(effect, "PF_GetFloatingPointColorFromColorDef");
    if (!call || !def || !color || def->param_type != PF_Param_COLOR)
        return PF_Err_BAD_CALLBACK_PARAM;
    const A_long index = call->IndexOf(def);
    const ColorValue value = index > 0 && call->instance
                                 ? call->instance->Color(index)
                                 : ColorValue::FromBytes(def->u.cd.value.red, def->u.cd.value.green,
                                                         def->u.cd.value.blue, def->u.cd.value.alpha);
    *color = {value.alpha, value.red, value.green, value.blue};
    return PF_Err_NONE;
}

PF_Err UpdateParamUi(PF_ProgPtr effect, PF_ParamIndex index, const PF_ParamDef* def) {
    Call* call = Call::From(effect, "PF_UpdateParamUI");
    if (!call || !def)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->command != PF_Cmd_UPDATE_PARAMS_UI && call->command != PF_Cmd_USER_CHANGED_PARAM &&
        call->command != PF_Cmd_EVENT) {
        call->Report("changed a parameter's look out of turn");
        return PF_Err_INVALID_CALLBACK;
    }
    if (index < 1 || index >= static_cast<A_long>(call->host.params.Size())) {
        call->Report("changed the look of parameter " + std::to_string(index) + ", which it may not");
        return PF_Err_INVALID_INDEX;
    }
    call->instance->SetLook(index, *def);
    return PF_Err_NONE;
}

PF_Err OptionsButtonName(PF_ProgPtr effect, const A_char* name) {
    Call* call = Call::From(effect, "PF_SetOptionsButtonName");
    if (!call || !name)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->command != PF_Cmd_PARAMS_SETUP)
        call->Report("named the options button out of turn");
    return PF_Err_NONE;
}

const PF_WorldSuite2 s_Worlds = {[](PF_ProgPtr effect, A_long width, A_long height, PF_Boolean,
                                    PF_PixelFormat format, PF_EffectWorld* world) -> PF_Err {
                                     return CreatePluginWorld(effect, width, height,
                                                              static_cast<std::uint32_t>(format), world);
                                 },
                                 DisposePluginWorld, WorldFormat};
const PF_ColorParamSuite1 s_Colors = {FloatColor};
const PF_ParamUtilsSuite3 s_ParamUtils = {UpdateParamUi, nullptr, nullptr, nullptr, nullptr,
                                          nullptr,       nullptr, nullptr, nullptr};
const PF_EffectUISuite1 s_EffectUi = {OptionsButtonName};

} // namespace

const PF_HandleSuite1& HandleFunctions() {
    static const PF_HandleSuite1 s_Handles = {NewHandle,     LockHandle, UnlockHandle,
                                              DisposeHandle, HandleSize, ResizeHandle};
    return s_Handles;
}

PF_Err CreatePluginWorld(PF_ProgPtr effect, A_long width, A_long height, std::uint32_t format,
                         PF_EffectWorld* def) {
    Call* call = Call::From(effect, "new_world");
    if (!call || !def || width < 0 || height < 0 || FormatBits(format) == 0)
        return PF_Err_BAD_CALLBACK_PARAM;
    const WorldShape shape = {static_cast<unsigned>(width), static_cast<unsigned>(height), format,
                              call->host.options.rowPadding};
    World& world = call->host.worlds.Create(shape, std::string("a world made in ") + call->Name(), true);
    world.Clear();
    *def = world.Def();
    return PF_Err_NONE;
}

PF_Err DisposePluginWorld(PF_ProgPtr effect, PF_EffectWorld* def) {
    Call* call = Call::From(effect, "dispose_world");
    if (!call)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->host.worlds.DisposeOfPlugins(def))
        return PF_Err_NONE;
    call->Report("disposed of a world that it did not make");
    return PF_Err_BAD_CALLBACK_PARAM;
}

const SuiteRow* EffectSuites() {
    static const SuiteRow s_Rows[] = {
        {kPFHandleSuite, kPFHandleSuiteVersion1, SuiteRow::Both, &HandleFunctions()},
        {kPFWorldSuite, kPFWorldSuiteVersion2, SuiteRow::AfterEffects, &s_Worlds},
        {kPFColorParamSuite, kPFColorParamSuiteVersion1, SuiteRow::Both, &s_Colors},
        {kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, SuiteRow::AfterEffects, &s_ParamUtils},
        {kPFParamUtilsSuite, 1, SuiteRow::Premiere, &s_ParamUtils},
        {kPFEffectUISuite, kPFEffectUISuiteVersion1, SuiteRow::AfterEffects, &s_EffectUi},
        {nullptr, 0, SuiteRow::Both, nullptr},
    };
    return s_Rows;
}

} // namespace stricthost
