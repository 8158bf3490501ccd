#include "guard/Stage.h"

#include "guard/Board.h"

namespace fxhost {

namespace {

Board s_Unguarded;
std::atomic<Board*> s_Current{&s_Unguarded};

// By Stage.
constexpr const char* s_StageNames[] = {"between frames", "setup", "updateUIFlags", "preRender",
                                        "upload",         "draw",  "read-back"};

} // namespace

Board& CurrentBoard() {
    return *s_Current;
}

void SetCurrentBoard(Board* board) {
    s_Current = board ? board : &s_Unguarded;
}

const char* StageName(Stage stage) {
    return s_StageNames[static_cast<std::uint32_t>(stage)];
}

StageSpan::StageSpan(Stage first) {
    ++CurrentBoard().spans;
    CurrentBoard().stage = first;
}

StageSpan::~StageSpan() {
    CurrentBoard().stage = Stage::Idle;
}

void StageSpan::next(Stage stage) {
    CurrentBoard().stage = stage;
}

void ReportFrame(long frame) {
    CurrentBoard().frame = frame;
}

void ReportWritten(long written, long total, bool resumable) {
    Board& board = CurrentBoard();
    board.written = written;
    board.total = total;
    board.resumable = resumable;
}

} // namespace fxhost
