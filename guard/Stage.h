#pragma once

#include <cstdint>

namespace fxhost {

// What a renderer is busy with. Idle is everything that no time is set for: waiting for pictures, writing.
enum class Stage : std::uint32_t { Idle, Setup, UpdateUI, PreRender, Upload, Draw, ReadBack };

// As messages call it: "setup", "updateUIFlags", "preRender", "upload", "draw", "read-back".
const char* StageName(Stage stage);

// Tells the guarding parent what the render thread does; without a parent it does nothing. The frame's clock
// runs from the span's start to its end, whatever the number of stages. One span at a time, on one thread.
class StageSpan {
public:
    explicit StageSpan(Stage first);
    ~StageSpan();
    StageSpan(const StageSpan&) = delete;
    StageSpan& operator=(const StageSpan&) = delete;

    void next(Stage stage);
};

// The number of the frame that the following spans belong to, as the user counts frames.
void ReportFrame(long frame);

// How many of how many frames are safely written; told when a run ends badly. `resumable`: whether --resume
// can go on after them.
void ReportWritten(long written, long total, bool resumable);

} // namespace fxhost
