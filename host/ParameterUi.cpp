#include <string>

#include "AE_EffectSuites.h"
#include "engine/IPlugin.h"
#include "host/BoundedText.h"
#include "host/HostState.h"
#include "host/ParamName.h"
#include "host/ParameterBridge.h"
#include "host/Suites.h"

namespace Adapter {

namespace {

void SetName(PF_ParamDef& def, const std::string& label) {
    const std::string name = Bounded(label, PF_MAX_EFFECT_PARAM_NAME_LEN);
    name.copy(def.PF_DEF_NAME, name.size());
    def.PF_DEF_NAME[name.size()] = '\0';
}

// The host's own definition with the engine's label and state.
PF_ParamDef Described(const PF_ParamDef& shown, const Parameter& parameter) {
    PF_ParamDef def = shown;
    def.ui_flags &= ~PF_PUI_DISABLED;
    if (parameter.flags & Parameter::Disabled)
        def.ui_flags |= PF_PUI_DISABLED;
    SetName(def, parameter.label);
    return def;
}

} // namespace

void UpdateParametersUI(PF_InData* in, PF_OutData* out, PF_ParamDef** params) {
    IPlugin& engine = *GetPlugin();
    // PF_UpdateParamUI is the first entry under each of the three numbers. A host that has none shows the
    // controls as they were published.
    ScopedSuite<PF_ParamUtilsSuite3> suite(
        *in, {{kPFParamUtilsSuite, 3}, {kPFParamUtilsSuite, 2}, {kPFParamUtilsSuite, 1}});
    bool hostTakesUpdates = params && suite;
    const unsigned count = engine.getNumParams();
    for (unsigned i = 0; i < count; ++i) {
        const Parameter& parameter = engine.getParamDesc(i);
        if (parameter.flags & Parameter::NotPublished)
            continue;
        const auto hostIndex = static_cast<A_long>(s_MapPlugin2AEParam[i]);
        if (hostIndex == 0)
            continue;
        A_long readable = 0;
        if (hostTakesUpdates && FindHostIndex(*in, i, readable) && params[readable]) {
            const PF_ParamDef def = Described(*params[readable], parameter);
            hostTakesUpdates = suite->PF_UpdateParamUI(in->effect_ref, readable, &def) == PF_Err_NONE;
        }
        s_MapAEParam2Plugin[static_cast<A_u_long>(hostIndex)] = i;
    }
    out->out_flags |= PF_OutFlag_REFRESH_UI;
}

} // namespace Adapter
