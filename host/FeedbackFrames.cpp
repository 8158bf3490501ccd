#include "host/FeedbackFrames.h"

#include "AE_GeneralPlug.h"
#include "engine/IPlugin.h"
#include "host/InputUpload.h"
#include "host/SequenceRecord.h"
#include "host/Suites.h"

namespace Adapter {

namespace {

void Check(A_Err err) {
    if (err != A_Err_NONE)
        throw static_cast<int>(err);
}

// The suites, acquired anew for every frame and given back in the opposite order.
struct FeedbackSuites {
    explicit FeedbackSuites(const PF_InData& in)
        : effect(in, {kAEGPEffectSuite, kAEGPEffectSuiteVersion3}, A_Err_MISSING_SUITE),
          options(in, {kAEGPLayerRenderOptionsSuite, kAEGPLayerRenderOptionsSuiteVersion1},
                  A_Err_MISSING_SUITE),
          render(in, {kAEGPRenderSuite, kAEGPRenderSuiteVersion5}, A_Err_MISSING_SUITE),
          interface(in, {kAEGPPFInterfaceSuite, kAEGPPFInterfaceSuiteVersion1}, A_Err_MISSING_SUITE),
          world(in, {kAEGPWorldSuite, kAEGPWorldSuiteVersion3}, A_Err_MISSING_SUITE) {}
    RequiredSuite<AEGP_EffectSuite3> effect;
    RequiredSuite<AEGP_LayerRenderOptionsSuite1> options;
    RequiredSuite<AEGP_RenderSuite5> render;
    RequiredSuite<AEGP_PFInterfaceSuite1> interface;
    RequiredSuite<AEGP_WorldSuite3> world;
};

// This effect, as the render suites name it.
class EffectRef {
public:
    EffectRef(const FeedbackSuites& suites, const PF_InData& in, AEGP_PluginID plugin) : m_Suites(suites) {
        Check(suites.interface->AEGP_GetNewEffectForEffect(plugin, in.effect_ref, &m_Ref));
    }
    ~EffectRef() { m_Suites.effect->AEGP_DisposeEffect(m_Ref); }
    EffectRef(const EffectRef&) = delete;
    EffectRef& operator=(const EffectRef&) = delete;
    AEGP_EffectRefH Get() const { return m_Ref; }

private:
    const FeedbackSuites& m_Suites;
    AEGP_EffectRefH m_Ref = nullptr;
};

// The layer before the effect, at one time.
class RenderOptions {
public:
    RenderOptions(const FeedbackSuites& suites, AEGP_PluginID plugin, const EffectRef& effect)
        : m_Suites(suites) {
        Check(suites.options->AEGP_NewFromUpstreamOfEffect(plugin, effect.Get(), &m_Options));
    }
    ~RenderOptions() { m_Suites.options->AEGP_Dispose(m_Options); }
    RenderOptions(const RenderOptions&) = delete;
    RenderOptions& operator=(const RenderOptions&) = delete;
    void SetTime(A_Time time) { Check(m_Suites.options->AEGP_SetTime(m_Options, time)); }
    AEGP_LayerRenderOptionsH Get() const { return m_Options; }

private:
    const FeedbackSuites& m_Suites;
    AEGP_LayerRenderOptionsH m_Options = nullptr;
};

// A frame that the host rendered for us; its pixels live as long as this.
class RenderedFrame {
public:
    RenderedFrame(const FeedbackSuites& suites, const RenderOptions& options) : m_Suites(suites) {
        Check(suites.render->AEGP_RenderAndCheckoutLayerFrame(options.Get(), nullptr, nullptr, &m_Receipt));
    }
    ~RenderedFrame() { m_Suites.render->AEGP_CheckinFrame(m_Receipt); }
    RenderedFrame(const RenderedFrame&) = delete;
    RenderedFrame& operator=(const RenderedFrame&) = delete;

    PF_EffectWorld World() const {
        AEGP_WorldH handle = nullptr;
        PF_EffectWorld world = {};
        Check(m_Suites.render->AEGP_GetReceiptWorld(m_Receipt, &handle));
        Check(m_Suites.world->AEGP_FillOutPFEffectWorld(handle, &world));
        return world;
    }

private:
    const FeedbackSuites& m_Suites;
    AEGP_FrameReceiptH m_Receipt = nullptr;
};

AEGP_PluginID PluginId(const PF_InData& in) {
    const auto handle = reinterpret_cast<GlobalData**>(in.global_data);
    return handle && *handle ? (*handle)->aegpPluginId : 0;
}

void UploadFrameAt(PF_InData* in, A_long time, unsigned bits, int index) {
    const FeedbackSuites suites(*in);
    const AEGP_PluginID plugin = PluginId(*in);
    const EffectRef effect(suites, *in, plugin);
    RenderOptions options(suites, plugin, effect);
    options.SetTime({time, in->time_scale});
    const RenderedFrame frame(suites, options);
    PF_EffectWorld world = frame.World();
    UploadInputSurface(in, &world, bits, index);
}

} // namespace

void UploadFeedbackFrames(PF_InData* in, unsigned bits) {
    const auto frames = static_cast<int>(GetPlugin()->getNumFeedbackFrames());
    for (int k = 1; k <= frames; ++k) {
        const auto time = in->current_time - static_cast<long long>(k) * in->time_step;
        if (time >= 0)
            UploadFrameAt(in, static_cast<A_long>(time), bits, EarlierFrame(k));
    }
}

} // namespace Adapter
