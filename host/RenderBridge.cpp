#include "host/RenderBridge.h"

#include "engine/IPlugin.h"
#include "host/CommandGuard.h"
#include "host/Commands.h"
#include "host/CopyOut.h"
#include "host/FeedbackFrames.h"
#include "host/HostKind.h"
#include "host/InputUpload.h"
#include "host/Instance.h"
#include "host/ParameterBridge.h"
#include "host/PixelData.h"
#include "host/Scaling.h"
#include "host/SequenceRecord.h"

namespace Adapter {

namespace {

// The engine's picture, given back with the scope.
class GrabbedResult {
public:
    explicit GrabbedResult(IPlugin& engine) : m_Engine(engine), m_Pixels(engine.grabResultBegin()) {}
    ~GrabbedResult() {
        try {
            End();
        } catch (...) {
            // The frame already failed with an error of its own.
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
    PF_OutData* out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    PF_LayerDef* input;
    int bits;       // per channel of both worlds
    unsigned width; // what the engine renders, pixels
    unsigned height;
};

PF_Err CopyInput(const Frame& frame) {
    if (IsEmptyWorld(*frame.input)) {
        ClearPixels(*frame.output, frame.bits);
        return PF_Err_NONE;
    }
    return frame.in->utils->copy(frame.in->effect_ref, frame.input, frame.output, nullptr, nullptr);
}

void SelectInstance(IPlugin& engine, const Frame& frame, const SequenceRecord& record) {
    SelectSequence(engine, record.engineSequence);
    SelectComposition(engine, record.compWidth, record.compHeight, record.compPixelAspect);
    engine.setInputOrigin(frame.output->origin_x, frame.output->origin_y);
}

// Premiere Pro gives no chance to choose the output's size, so the engine's size may differ from it.
void ChooseSize(Frame& frame) {
    frame.width = Extent(frame.output->width);
    frame.height = Extent(frame.output->height);
    const auto handle = reinterpret_cast<FrameData**>(frame.in->frame_data);
    if (!IsPremiere(*frame.in) || !handle || !*handle)
        return;
    frame.width = (*handle)->width;
    frame.height = (*handle)->height;
}

PF_Err FillMargins(const Frame& frame) {
    if (!IsPremiere(*frame.in) ||
        (frame.width >= Extent(frame.output->width) && frame.height >= Extent(frame.output->height)))
        return PF_Err_NONE;
    const PF_Pixel transparent = {};
    return frame.in->utils->fill(frame.in->effect_ref, &transparent, nullptr, frame.output);
}

void RunEngine(IPlugin& engine, const Frame& frame) {
    const auto bits = static_cast<unsigned>(frame.bits);
    UploadInputSurface(frame.in, frame.input, bits, InputFrame);
    UploadFeedbackFrames(frame.in, bits);
    const double scale = frame.in->time_scale ? frame.in->time_scale : 1;
    engine.render(frame.in->current_time / scale, frame.width, frame.height, bits,
                  Ratio(frame.output->pix_aspect_ratio));
}

PF_Err CopyResult(const Frame& frame, const void* pixels) {
    void* target = nullptr;
    const int bits = GetPixelData(frame.in, &target, frame.output);
    if (!target || bits == 0 || bits != frame.bits)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    CopyFrame({pixels, frame.width, frame.height, bits}, *frame.output);
    return PF_Err_NONE;
}

// err is what became of the margins; it comes back when nothing fails later.
PF_Err RenderLocked(IPlugin& engine, const Frame& frame, PF_Err err) {
    RunEngine(engine, frame);
    GrabbedResult result(engine);
    if (!result.Pixels()) {
        if (err == PF_Err_NONE)
            err = CopyInput(frame);
    } else if (const PF_Err copied = CopyResult(frame, result.Pixels()); copied != PF_Err_NONE) {
        err = copied;
    }
    result.End();
    engine.end();
    return err;
}

} // namespace

PF_Err Render(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output, PF_LayerDef* input) {
    if (!input && params && params[0])
        input = &params[0]->u.ld;
    if (!input || !output)
        return PF_Err_BAD_CALLBACK_PARAM;
    Frame frame = {in, out, params, output, input, 0, 0, 0};
    frame.bits = GetPixelDataBpp(IsEmptyWorld(*input) ? output : input, in, out, nullptr);
    SequenceRecord* record = FindRecord(*in);
    if (!record)
        return CopyInput(frame);

    IPlugin& engine = *GetPlugin();
    SelectInstance(engine, frame, *record);
    ChooseSize(frame);
    const PF_Err filled = FillMargins(frame);
    if (record->uiReady) {
        record->lastWidth = frame.width;
        record->lastHeight = frame.height;
        record->lastBpp = static_cast<std::uint32_t>(frame.bits);
    }
    if (!engine.begin(true))
        return filled != PF_Err_NONE ? filled : CopyInput(frame);
    UpdateParametersValues(in, out, params, true);

    FrameLock lock;
    if (!lock)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    const PF_Err err = RenderLocked(engine, frame, filled);
    lock.Release();
    return err;
}

PF_Err ClassicRender(Call& call) {
    return Render(call.in, call.out, call.params, call.output, nullptr);
}

} // namespace Adapter
