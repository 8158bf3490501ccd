#include "sdk/SuitesApi.h"
#include "stricthost/HandleCallbacks.h"
#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/PluginWorlds.h"
#include "stricthost/SuiteTable.h"

namespace stricthost {

namespace {

PF_Err WorldFormat(const PF_EffectWorld* def, PF_PixelFormat* format) {
    HostCall* call = HostCall::Require("PF_GetPixelFormat");
    const World* world = call ? call->host.worlds.Find(def) : nullptr;
    if (call && !world)
        call->Report("asked for the pixel format of a world that does not exist");
    if (!world || !format)
        return PF_Err_BAD_CALLBACK_PARAM;
    *format = static_cast<PF_PixelFormat>(world->Format());
    return PF_Err_NONE;
}

PF_Err FloatColor(PF_ProgPtr effect, const PF_ParamDef* def, PF_PixelFloat* color) {
    HostCall* call = HostCall::From(effect, "PF_GetFloatingPointColorFromColorDef");
    if (!call || !def || !color || def->param_type != PF_Param_COLOR)
        return PF_Err_BAD_CALLBACK_PARAM;
    const A_long index = call->IndexOf(def);
    const ColorValue value = index > 0 && call->instance
                                 ? call->instance->ColorAt(index, call->TimeOf(def))
                                 : ColorValue::FromBytes(def->u.cd.value.red, def->u.cd.value.green,
                                                         def->u.cd.value.blue, def->u.cd.value.alpha);
    *color = {value.alpha, value.red, value.green, value.blue};
    return PF_Err_NONE;
}

PF_Err UpdateParamUi(PF_ProgPtr effect, PF_ParamIndex index, const PF_ParamDef* def) {
    HostCall* call = HostCall::From(effect, "PF_UpdateParamUI");
    if (!call || !def)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->command != PF_Cmd_UPDATE_PARAMS_UI && call->command != PF_Cmd_USER_CHANGED_PARAM &&
        call->command != PF_Cmd_EVENT) {
        call->Report("changed a control out of turn");
        return PF_Err_INVALID_CALLBACK;
    }
    if (index < 1 || index >= static_cast<A_long>(call->host.params.Size())) {
        call->Report("changed the control of parameter " + std::to_string(index) + ", which it may not");
        return PF_Err_INVALID_INDEX;
    }
    call->instance->SetControlState(index, *def);
    return PF_Err_NONE;
}

PF_Err OptionsButtonName(PF_ProgPtr effect, const A_char* name) {
    HostCall* call = HostCall::From(effect, "PF_SetOptionsButtonName");
    if (!call || !name)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->command != PF_Cmd_PARAMS_SETUP)
        call->Report("named the options button out of turn");
    return PF_Err_NONE;
}

PF_Err ConstSequenceData(PF_ProgPtr effect, PF_ConstHandle* data) {
    HostCall* call = HostCall::From(effect, "PF_GetConstSequenceData");
    if (!call || !call->instance || !data)
        return PF_Err_BAD_CALLBACK_PARAM;
    const PF_Handle shared = call->frame ? call->instance->SharedData() : call->in.sequence_data;
    call->Protect(shared);
    *data = reinterpret_cast<PF_ConstHandle>(shared);
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
const PF_EffectSequenceDataSuite1 s_SequenceData = {ConstSequenceData};

} // namespace

const SuiteRow* EffectSuites() {
    static const SuiteRow s_Rows[] = {
        {kPFHandleSuite, kPFHandleSuiteVersion1, SuiteRow::Both, &HandleFunctions()},
        {kPFWorldSuite, kPFWorldSuiteVersion2, SuiteRow::AfterEffects, &s_Worlds},
        {kPFColorParamSuite, kPFColorParamSuiteVersion1, SuiteRow::Both, &s_Colors},
        {kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, SuiteRow::AfterEffects, &s_ParamUtils},
        {kPFParamUtilsSuite, 1, SuiteRow::Premiere, &s_ParamUtils},
        {kPFEffectUISuite, kPFEffectUISuiteVersion1, SuiteRow::AfterEffects, &s_EffectUi},
        {kPFEffectSequenceDataSuite, kPFEffectSequenceDataSuiteVersion1, SuiteRow::AfterEffects,
         &s_SequenceData},
        {nullptr, 0, SuiteRow::Both, nullptr},
    };
    return s_Rows;
}

} // namespace stricthost
