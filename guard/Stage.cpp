#include "guard/Stage.h"

#include "guard/SharedStatus.h"

namespace fxhost {

namespace {

// Indexed by Stage.
constexpr const char* s_StageNames[] = {"between frames", "setup", "updateUIFlags", "preRender", "upload",
                                        "draw",           "draw",  "read-back",     "read-back"};

} // namespace

const char* StageName(Stage stage) {
    return s_StageNames[static_cast<std::uint32_t>(stage)];
}

StageSpan::StageSpan(Stage first, const StageListener* listener) : m_Listener(listener) {
    ++CurrentStatus().spans;
    next(first);
}

StageSpan::~StageSpan() {
    CurrentStatus().stage = Stage::Idle;
}

void StageSpan::next(Stage stage) {
    CurrentStatus().stage = stage;
    if (m_Listener && *m_Listener)
        (*m_Listener)(stage);
}

void ReportFrame(long frame) {
    CurrentStatus().frame = frame;
}

long ReportedFrame() {
    return CurrentStatus().frame;
}

WrittenFrames ReportedWritten() {
    const SharedStatus& status = CurrentStatus();
    return {status.written, status.total};
}

void ReportWritten(long written, long total, bool resumable) {
    SharedStatus& status = CurrentStatus();
    status.written = written;
    status.total = total;
    status.resumable = resumable;
}

} // namespace fxhost
