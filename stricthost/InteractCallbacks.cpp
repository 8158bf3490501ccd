#include "stricthost/InteractCallbacks.h"

#include <algorithm>

#include "AE_EffectUI.h"
#include "stricthost/FrameGeometry.h"
#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/SmartState.h"

namespace stricthost {

namespace {

bool IsPassed(const HostCall& call, const PF_ParamDef* def) {
    return !call.params.empty() && def >= call.params.data() && def < call.params.data() + call.params.size();
}

// False for layers that smart render may only use through checkout_layer.
bool MayHavePixels(const HostCall& call, A_long index) {
    if (!call.host.options.quirks.bareLayers || !call.smart)
        return true;
    const auto& layers = call.smart->layers;
    return std::any_of(layers.begin(), layers.end(),
                       [index](const auto& layer) { return layer.second.index == index; });
}

// Makes the world of a checked-out layer. An empty layer leaves the definition without pixels.
World* MakeLayerWorld(HostCall& call, A_long index, HostTime time, PF_ParamDef& def) {
    const LayerValue picture = call.instance->LayerAt(index, time);
    def.u.ld = {};
    if (!picture && index != 0)
        return nullptr;
    World* world = index == 0 ? CreateInput(call) : CreateLayer(call, *picture, index);
    if (world)
        def.u.ld = world->Def();
    return world;
}

PF_Err CheckoutParam(PF_ProgPtr effect, PF_ParamIndex index, A_long time, A_long, A_u_long scale,
                     PF_ParamDef* def) {
    HostCall* call = HostCall::From(effect, "checkout_param");
    if (!call || !def)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (!call->instance) {
        call->Report("called checkout_param, but there are no values yet");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (index < 0 || index >= static_cast<A_long>(call->host.params.Size())) {
        call->Report("checked out parameter " + std::to_string(index) + ", which does not exist");
        return PF_Err_INVALID_INDEX;
    }
    if (IsPassed(*call, def) || call->checkouts.count(def) != 0) {
        call->Report("checked a parameter out into a definition that is in use");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (scale == 0)
        call->Report("checked a parameter out at a time without a scale");
    if (call->host.Interrupted(*call))
        return PF_Interrupt_CANCEL;
    *def = call->instance->Definition(index, call->in, {time, scale});
    World* world = def->param_type == PF_Param_LAYER && MayHavePixels(*call, index)
                       ? MakeLayerWorld(*call, index, {time, scale}, *def)
                       : nullptr;
    call->checkouts[def] = {index, world, {time, scale}};
    return PF_Err_NONE;
}

PF_Err CheckinParam(PF_ProgPtr effect, PF_ParamDef* def) {
    HostCall* call = HostCall::From(effect, "checkin_param");
    if (!call)
        return PF_Err_BAD_CALLBACK_PARAM;
    const auto found = call->checkouts.find(def);
    if (found == call->checkouts.end()) {
        call->Report("checked in a parameter that is not checked out");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (found->second.world)
        call->host.worlds.Retire(*found->second.world);
    call->checkouts.erase(found);
    return PF_Err_NONE;
}

PF_Err AddParam(PF_ProgPtr effect, PF_ParamIndex index, PF_ParamDefPtr def) {
    HostCall* call = HostCall::From(effect, "add_param");
    if (!call || !def)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->command != PF_Cmd_PARAMS_SETUP) {
        call->Report("added a parameter out of turn");
        return PF_Err_INVALID_CALLBACK;
    }
    if (index != -1 && index != static_cast<A_long>(call->host.params.Size())) {
        call->Report("added a parameter elsewhere than at the end");
        return PF_Err_INVALID_INDEX;
    }
    if (call->host.options.refusedTypes.count(def->param_type) != 0)
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    if (!call->host.params.Add(*def)) {
        call->Report("added a parameter of the unknown type " + std::to_string(def->param_type));
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    ++call->added;
    return PF_Err_NONE;
}

// Reports whether the user interrupts the frame.
PF_Err Poll(PF_ProgPtr effect, const char* what) {
    HostCall* call = HostCall::From(effect, what);
    if (!call)
        return PF_Err_BAD_CALLBACK_PARAM;
    return call->host.Interrupted(*call) ? PF_Interrupt_CANCEL : PF_Err_NONE;
}

PF_Err Abort(PF_ProgPtr effect) {
    return Poll(effect, "abort");
}

PF_Err Progress(PF_ProgPtr effect, A_long, A_long) {
    return Poll(effect, "progress");
}

PF_Err RegisterUi(PF_ProgPtr effect, PF_CustomUIInfo* info) {
    HostCall* call = HostCall::From(effect, "register_ui");
    if (!call || !info)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->command != PF_Cmd_PARAMS_SETUP)
        call->Report("registered a custom UI out of turn");
    if ((call->host.outFlags & PF_OutFlag_CUSTOM_UI) == 0)
        call->Report("registered a custom UI without PF_OutFlag_CUSTOM_UI");
    return PF_Err_NONE;
}

} // namespace

PF_InteractCallbacks InteractTable() {
    PF_InteractCallbacks table = {};
    table.checkout_param = CheckoutParam;
    table.checkin_param = CheckinParam;
    table.add_param = AddParam;
    table.abort = Abort;
    table.progress = Progress;
    table.register_ui = RegisterUi;
    return table;
}

} // namespace stricthost
