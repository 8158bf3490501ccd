#include "host/InputFrames.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include "engine/IPlugin.h"
#include "host/CommandCall.h"
#include "host/Geometry.h"
#include "host/SequenceRecord.h"
#include "host/Suites.h"
#include "host/WorldPixels.h"

namespace Adapter {

namespace {

// The visible part of the clip without padding. Pixels outside the world are transparent.
std::vector<std::byte> VisiblePixels(const PF_InData& in, const PF_LayerDef& world, std::uint32_t width,
                                     std::uint32_t height, int bits) {
    const std::size_t rowBytes = PackedRowBytes(width, bits);
    const auto pixelBytes = static_cast<std::int64_t>(PackedRowBytes(1, bits));
    std::vector<std::byte> packed(rowBytes * height);
    if (packed.empty())
        return packed;
    const Overlap across(world.width, -static_cast<std::int64_t>(in.pre_effect_source_origin_x), width);
    const Overlap down(world.height, -static_cast<std::int64_t>(in.pre_effect_source_origin_y), height);
    const auto* source = reinterpret_cast<const std::byte*>(world.data) + across.source * pixelBytes;
    std::byte* target = packed.data() + across.target * pixelBytes;
    for (std::int64_t y = 0; y < down.count; ++y)
        std::memcpy(target + (down.target + y) * static_cast<std::int64_t>(rowBytes),
                    source + (down.source + y) * world.rowbytes,
                    static_cast<std::size_t>(across.count * pixelBytes));
    return packed;
}

void UploadVisible(IPlugin& engine, const PF_InData& in, const PF_LayerDef& world, int bits, unsigned index) {
    const std::uint32_t width = Scaled(Extent(in.width), in.downsample_x);
    const std::uint32_t height = Scaled(Extent(in.height), in.downsample_y);
    std::vector<std::byte> packed = VisiblePixels(in, world, width, height, bits);
    engine.grabIntoTexture(index, packed.data(), width, height, static_cast<unsigned>(bits),
                           static_cast<std::ptrdiff_t>(PackedRowBytes(width, bits)));
}

// Replaces the pixels of an earlier frame, which the engine would show otherwise.
void UploadTransparentPixel(IPlugin& engine, int bits, unsigned index) {
    float transparent[4] = {}; // the size of the largest pixel
    engine.grabIntoTexture(index, transparent, 1, 1, static_cast<unsigned>(bits),
                           static_cast<std::ptrdiff_t>(PackedRowBytes(1, bits)));
}

// False for a world with fewer bits than the given depth, which would be read beyond the end of its rows.
bool RowsHold(const PF_LayerDef& world, int bits) {
    const std::int64_t stride = std::abs(std::int64_t{world.rowbytes});
    return world.height == 1 || PackedRowBytes(Extent(world.width), bits) <= static_cast<std::size_t>(stride);
}

void Check(A_Err err) {
    if (err != A_Err_NONE)
        throw static_cast<int>(err);
}

// The suites that render an upstream frame, acquired for each frame and released in the opposite order.
struct FeedbackSuites {
    explicit FeedbackSuites(const PF_InData& in)
        : effect(in, {kAEGPEffectSuite, kAEGPEffectSuiteVersion3}, A_Err_MISSING_SUITE),
          options(in, {kAEGPLayerRenderOptionsSuite, kAEGPLayerRenderOptionsSuiteVersion1},
                  A_Err_MISSING_SUITE),
          render(in, {kAEGPRenderSuite, kAEGPRenderSuiteVersion5}, A_Err_MISSING_SUITE),
          pfInterface(in, {kAEGPPFInterfaceSuite, kAEGPPFInterfaceSuiteVersion1}, A_Err_MISSING_SUITE),
          world(in, {kAEGPWorldSuite, kAEGPWorldSuiteVersion3}, A_Err_MISSING_SUITE) {}
    RequiredSuite<AEGP_EffectSuite3> effect;
    RequiredSuite<AEGP_LayerRenderOptionsSuite1> options;
    RequiredSuite<AEGP_RenderSuite5> render;
    RequiredSuite<AEGP_PFInterfaceSuite1> pfInterface;
    RequiredSuite<AEGP_WorldSuite3> world;
};

// The reference by which the AEGP suites know this effect.
class EffectRef {
public:
    EffectRef(const FeedbackSuites& suites, const PF_InData& in, AEGP_PluginID plugin) : m_Suites(suites) {
        Check(suites.pfInterface->AEGP_GetNewEffectForEffect(plugin, in.effect_ref, &m_Ref));
    }
    ~EffectRef() { m_Suites.effect->AEGP_DisposeEffect(m_Ref); }
    EffectRef(const EffectRef&) = delete;
    EffectRef& operator=(const EffectRef&) = delete;
    AEGP_EffectRefH Get() const { return m_Ref; }

private:
    const FeedbackSuites& m_Suites;
    AEGP_EffectRefH m_Ref = nullptr;
};

// Options for rendering the layer upstream of the effect at one time.
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

// A frame that the host rendered. Its pixels are valid for the lifetime of this object.
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

void UploadFrameAt(IPlugin& engine, PF_InData* in, A_long time, unsigned bits, int index) {
    const FeedbackSuites suites(*in);
    const AEGP_PluginID plugin = PluginId(*in);
    const EffectRef effect(suites, *in, plugin);
    RenderOptions options(suites, plugin, effect);
    options.SetTime({time, in->time_scale});
    const RenderedFrame frame(suites, options);
    PF_EffectWorld world = frame.World();
    UploadInputSurface(engine, in, &world, bits, index);
}

} // namespace

void UploadInputSurface(IPlugin& engine, PF_InData* in, PF_LayerDef* world, unsigned bits, int index) {
    if (!engine.isInputRequested())
        return;
    const int depth = static_cast<int>(bits);
    const auto texture = static_cast<unsigned>(index);
    if (IsEmptyWorld(*world))
        return UploadTransparentPixel(engine, depth, texture);
    if (!RowsHold(*world, depth))
        throw static_cast<int>(PF_Err_INTERNAL_STRUCT_DAMAGED);
    if (IsPremiere(*in))
        UploadVisible(engine, *in, *world, depth, texture);
    else
        engine.grabIntoTexture(texture, world->data, Extent(world->width), Extent(world->height), bits,
                               world->rowbytes);
}

void UploadFeedbackFrames(IPlugin& engine, PF_InData* in, unsigned bits) {
    const auto frames = static_cast<int>(engine.getNumFeedbackFrames());
    for (int k = 1; k <= frames; ++k) {
        const auto time = in->current_time - static_cast<long long>(k) * in->time_step;
        if (time >= 0)
            UploadFrameAt(engine, in, static_cast<A_long>(time), bits, EarlierFrame(k));
    }
}

} // namespace Adapter
