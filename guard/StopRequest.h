#pragma once

namespace fxhost {

// While one exists, SIGTERM, SIGINT and SIGHUP request a stop instead of ending the process, and writing to a
// closed pipe returns an error instead of raising SIGPIPE. One object at a time.
class StopScope {
public:
    // canDrain: true when a thread other than the render thread polls AbandonRequested.
    explicit StopScope(bool canDrain);
    ~StopScope();
    StopScope(const StopScope&) = delete;
    StopScope& operator=(const StopScope&) = delete;
};

// True when the user wants the work to stop: finish the frame, write what is rendered, end. Any thread.
bool StopRequested();
// After a stop: the exit status that shells expect, 128 plus the number of the signal.
int StopStatus();

// True when the render thread is given up as hung: write the queued frames, call MarkDrained and expect the
// process to be killed. Any thread.
bool AbandonRequested();
void MarkDrained();

} // namespace fxhost
