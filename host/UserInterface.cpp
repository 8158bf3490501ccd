#include <algorithm>

#include "engine/IPlugin.h"
#include "host/CommandGuard.h"
#include "host/Commands.h"
#include "host/HostState.h"
#include "host/Instance.h"
#include "host/ParameterBridge.h"
#include "host/Sequence.h"

#include "AE_EffectUI.h" // needs the headers above

namespace Adapter {

namespace {

// A button runs the effect's script again, but only for instances that came from a project: for a fresh
// instance it just ran.
PF_Err PressButton(CommandCall& call, SequenceRecord& record) {
    if (!call.guard.LockFrame())
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    if (record.wasResetup) {
        call.engine.resetup();
        record.uiReady = 1;
        UpdateParametersUI(call, call.params);
        if (IsPremiere(*call.in) || NeedsForcedRerender(*call.in))
            call.out->out_flags |= PF_OutFlag_FORCE_RERENDER;
    }
    call.guard.ReleaseFrame();
    return PF_Err_NONE;
}

// The colour picker draws nothing and leaves the control to the host.
PF_Err HandleColorUIEvent(PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*, PF_EventExtra*) {
    return PF_Err_NONE;
}

} // namespace

PF_Err UserChangedParam(CommandCall& call) {
    SequenceRecord* record = FindOwnRecord(call);
    const auto* extra = static_cast<const PF_UserChangedParamExtra*>(call.extra);
    if (!record || !extra)
        return PF_Err_NONE;
    SelectSequence(call.engine, record->engineSequence);
    const A_long index = extra->param_index;
    if (index == 0 || !call.params || !HostHasParam(*call.in, index))
        return PF_Err_NONE;
    PF_ParamDef* changed = call.params[index];
    if (!changed)
        return PF_Err_NONE;
    if (changed->param_type == PF_Param_BUTTON)
        return PressButton(call, *record);
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    UpdateParameterValue(call, suites, *changed, index);
    return PF_Err_NONE;
}

PF_Err UpdateParamsUi(CommandCall& call) {
    const SequenceRecord* record = FindOwnRecord(call);
    if (!record)
        return PF_Err_NONE;
    SelectSequence(call.engine, record->engineSequence);
    SelectComposition(call.engine, record->compWidth, record->compHeight, record->compPixelAspect);
    UpdateParametersValues(call, false);
    call.engine.preUIUpdate();
    UpdateParametersUI(call, call.params);
    return PF_Err_NONE;
}

PF_Err Event(CommandCall& call) {
    auto* extra = static_cast<PF_EventExtra*>(call.extra);
    if (!extra)
        return PF_Err_NONE;
    const A_long index = extra->effect_win.index;
    // Deliberate: only colours that were published before the first 3-D point are in this range.
    if (index < s_ColorsStart || index >= s_PointsStart)
        return PF_Err_NONE;
    const bool enabled =
        std::find(s_arEnabled.begin(), s_arEnabled.end(), static_cast<A_u_long>(index)) != s_arEnabled.end();
    PF_Err err = PF_Err_NONE;
    if (enabled)
        err = HandleColorUIEvent(call.in, call.out, call.params, call.output, extra);
    extra->evt_out_flags = PF_EO_HANDLED_EVENT;
    return err;
}

} // namespace Adapter
