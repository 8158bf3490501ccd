#pragma once

#include <cstdint>
#include <functional>

namespace fxhost {

// The steps of rendering. Idle covers everything without a time limit: waiting for input, writing output.
// A frame passes PreRender to CopyOut in this order. Script is the call of draw() until it returns; Draw is
// what the GPU still does after that.
enum class Stage : std::uint32_t {
    Idle,
    Setup,
    UpdateUI,
    PreRender,
    Upload,
    Script,
    Draw,
    ReadBack,
    CopyOut
};

// Name of a stage in messages: "setup", "updateUIFlags", "preRender", "upload", "draw" (Script and Draw),
// "read-back" (ReadBack and CopyOut).
const char* StageName(Stage stage);

// Is called as each stage of a frame begins, and with Stage::Idle when the frame is done.
using StageListener = std::function<void(Stage)>;

// Reports to the watchdog which stage the render thread is in. The time limit of a frame covers the span from
// its construction to its destruction, however many stages it has. One span at a time, on one thread. Without
// a watchdog only the listener is called.
class StageSpan {
public:
    // `listener` may be null and must outlive the span.
    explicit StageSpan(Stage first, const StageListener* listener = nullptr);
    // Enters Stage::Idle without calling the listener.
    ~StageSpan();
    StageSpan(const StageSpan&) = delete;
    StageSpan& operator=(const StageSpan&) = delete;

    void next(Stage stage);

private:
    const StageListener* m_Listener;
};

// Sets the frame number that messages about the following spans name.
void ReportFrame(long frame);

// The number that ReportFrame set last; -1 before the first call.
long ReportedFrame();

// Sets how many of how many frames survive if the process dies now, and whether --resume can continue after
// them. The watchdog prints this when a run ends badly.
void ReportWritten(long written, long total, bool resumable);

// What ReportWritten was called with last.
struct WrittenFrames {
    long written = 0, total = 0;
};
WrittenFrames ReportedWritten();

} // namespace fxhost
