#include "host/ParameterBridge.h"

#include "engine/IPlugin.h"
#include "host/HostState.h"
#include "parameters/ParameterTraits.h"

namespace Adapter {

namespace {

// One parameter's value, checked in again with the scope.
class ParamCheckout {
public:
    ParamCheckout(PF_InData* in, A_long index) : m_In(in) {
        m_Error = in->inter.checkout_param(in->effect_ref, index, in->current_time, in->time_step,
                                           in->time_scale, &m_Def);
    }
    ~ParamCheckout() {
        if (m_Error == PF_Err_NONE)
            m_In->inter.checkin_param(m_In->effect_ref, &m_Def);
    }
    ParamCheckout(const ParamCheckout&) = delete;
    ParamCheckout& operator=(const ParamCheckout&) = delete;

    PF_Err Error() const { return m_Error; }
    PF_ParamDef* Def() { return &m_Def; }

private:
    PF_InData* m_In;
    PF_ParamDef m_Def = {};
    PF_Err m_Error;
};

bool NeedsPixels(Parameter::Type type) {
    return TraitsOf(type).isTexture() || type == Parameter::PATH;
}

bool IsPushed(const Parameter& parameter, bool forRender) {
    return !(parameter.flags & Parameter::NotPublished) && (forRender || !NeedsPixels(parameter.type));
}

} // namespace

void UpdateParametersValues(PF_InData* in, PF_OutData* out, PF_ParamDef**, bool forRender) {
    IPlugin& engine = *GetPlugin();
    AEGP_SuiteHandler suites(in->pica_basicP);
    const unsigned count = engine.getNumParams();
    for (unsigned i = 0; i < count; ++i) {
        A_long hostIndex = 0;
        if (!IsPushed(engine.getParamDesc(i), forRender) || !FindHostIndex(*in, i, hostIndex))
            continue;
        ParamCheckout checkout(in, hostIndex);
        if (checkout.Error() != PF_Err_NONE)
            return;
        UpdateParameterValue(suites, in, out, checkout.Def(), hostIndex);
    }
}

} // namespace Adapter
