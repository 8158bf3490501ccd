#include "engine/FrameLock.h"
#include "engine/IPlugin.h"
#include "host/Commands.h"
#include "host/CopyOut.h"
#include "host/Geometry.h"
#include "host/InputFrames.h"
#include "host/Instance.h"
#include "host/ParameterBridge.h"
#include "host/Sequence.h"
#include "host/WorldPixels.h"

namespace Adapter {

namespace {

// The engine's result, which the destructor returns to the engine.
class GrabbedResult {
public:
    explicit GrabbedResult(IPlugin& engine) : m_Engine(engine), m_Pixels(engine.grabResultBegin()) {}
    ~GrabbedResult() {
        try {
            End();
        } catch (...) {
            // The frame already failed with another error.
        }
    }
    GrabbedResult(const GrabbedResult&) = delete;
    GrabbedResult& operator=(const GrabbedResult&) = delete;

    void* Pixels() const { return m_Pixels; }
    void End() {
        if (void* pixels = m_Pixels) {
            m_Pixels = nullptr;
            m_Engine.grabResultEnd(pixels);
        }
    }

private:
    IPlugin& m_Engine;
    void* m_Pixels;
};

struct Frame {
    PF_InData* in;
    PF_LayerDef* output;
    PF_LayerDef* input;
    int bits;       // per channel of the input
    int outputBits; // per channel of the output; both depths are equal in a frame that can be rendered
    unsigned width; // pixels that the engine renders
    unsigned height;
};

PF_Err CopyInput(const Frame& frame) {
    if (IsEmptyWorld(*frame.input)) {
        ClearPixels(*frame.output, frame.outputBits);
        return PF_Err_NONE;
    }
    return frame.in->utils->copy(frame.in->effect_ref, frame.input, frame.output, nullptr, nullptr);
}

void SelectInstance(IPlugin& engine, const Frame& frame, const SequenceRecord& record) {
    SelectSequence(engine, record.engineSequence);
    SelectComposition(engine, record.compWidth, record.compHeight, record.compPixelAspect);
    engine.setInputOrigin(frame.output->origin_x, frame.output->origin_y);
}

// Premiere Pro does not let effects shrink the output, so the engine's size may differ from the output's.
void ChooseSize(Frame& frame) {
    frame.width = Extent(frame.output->width);
    frame.height = Extent(frame.output->height);
    const auto handle = reinterpret_cast<FrameData**>(frame.in->frame_data);
    if (!IsPremiere(*frame.in) || !handle || !*handle)
        return;
    frame.width = (*handle)->width;
    frame.height = (*handle)->height;
}

// Premiere Pro's fill works at 8 bits only, so the margins are cleared here when it fails. Its error is
// returned.
PF_Err FillMargins(const Frame& frame) {
    if (!IsPremiere(*frame.in) ||
        (frame.width >= Extent(frame.output->width) && frame.height >= Extent(frame.output->height)))
        return PF_Err_NONE;
    const PF_Pixel transparent = {};
    const PF_Err err = frame.in->utils->fill(frame.in->effect_ref, &transparent, nullptr, frame.output);
    if (err != PF_Err_NONE)
        ClearPixels(*frame.output, frame.outputBits);
    return err;
}

void RunEngine(IPlugin& engine, const Frame& frame) {
    const auto bits = static_cast<unsigned>(frame.bits);
    UploadInputSurface(engine, frame.in, frame.input, bits, InputFrame);
    UploadFeedbackFrames(engine, frame.in, bits);
    const double scale = frame.in->time_scale ? frame.in->time_scale : 1;
    engine.render(frame.in->current_time / scale, frame.width, frame.height, bits,
                  Ratio(frame.output->pix_aspect_ratio));
}

PF_Err CopyResult(const Frame& frame, const void* pixels) {
    if (!frame.output->data || frame.bits == 0 || frame.bits != frame.outputBits)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    CopyFrame({pixels, frame.width, frame.height, frame.bits}, *frame.output);
    return PF_Err_NONE;
}

// `filled` is the result of filling the margins. An error in it matters only to a frame that the engine did
// not render.
PF_Err PassThrough(const Frame& frame, PF_Err filled) {
    return filled != PF_Err_NONE ? filled : CopyInput(frame);
}

PF_Err RenderLocked(IPlugin& engine, const Frame& frame, PF_Err filled) {
    RunEngine(engine, frame);
    GrabbedResult result(engine);
    const PF_Err err = result.Pixels() ? CopyResult(frame, result.Pixels()) : PassThrough(frame, filled);
    result.End();
    engine.end();
    return err;
}

// Renders one frame: describes it to the engine, uploads the inputs, runs the engine and copies its result
// into the output. A frame without instance data, without a begin of the engine or without a result is a copy
// of the input.
PF_Err Render(CommandCall& call, PF_LayerDef* output, PF_LayerDef* input) {
    if (!input && call.params && call.params[0])
        input = &call.params[0]->u.ld;
    if (!input || !output)
        return PF_Err_BAD_CALLBACK_PARAM;
    IPlugin& engine = call.engine;
    Frame frame = {call.in, output, input, 0, 0, 0, 0};
    frame.outputBits = GetPixelDataBpp(output, call.in, call.out, nullptr);
    frame.bits = IsEmptyWorld(*input) ? frame.outputBits : GetPixelDataBpp(input, call.in, call.out, nullptr);
    SequenceRecord* record = FindOwnRecord(call);
    if (!record)
        return CopyInput(frame);

    SelectInstance(engine, frame, *record);
    ChooseSize(frame);
    const PF_Err filled = FillMargins(frame);
    if (record->uiReady) {
        record->lastWidth = frame.width;
        record->lastHeight = frame.height;
        record->lastBpp = static_cast<std::uint32_t>(frame.bits);
    }
    if (!engine.begin(true))
        return PassThrough(frame, filled);
    UpdateParametersValues(call, true);

    FrameLock lock(engine);
    if (!lock)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    const PF_Err err = RenderLocked(engine, frame, filled);
    lock.release();
    return err;
}

} // namespace

PF_Err ClassicRender(CommandCall& call) {
    return Render(call, call.output, nullptr);
}

PF_Err SmartRender(CommandCall& call) {
    const auto* extra = static_cast<const PF_SmartRenderExtra*>(call.extra);
    if (!extra)
        return PF_Err_BAD_CALLBACK_PARAM;
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    if (const PF_Err err = extra->cb->checkout_layer_pixels(call.in->effect_ref, SmartInputCheckout, &input);
        err != PF_Err_NONE)
        return err;
    if (const PF_Err err = extra->cb->checkout_output(call.in->effect_ref, &output); err != PF_Err_NONE)
        return err;
    if (!output)
        return PF_Err_NONE; // the host requested no pixels
    PF_EffectWorld empty = {};
    return Render(call, output, input ? input : &empty);
}

} // namespace Adapter
