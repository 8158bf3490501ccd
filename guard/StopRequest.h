#pragma once

namespace fxhost {

// While one lives, SIGTERM and SIGINT ask for a stop instead of ending the process, and writing into a closed
// pipe is an error instead of a signal. One at a time.
class StopScope {
public:
    // canDrain: whether somebody asks AbandonRequested from a thread that is not the render thread.
    explicit StopScope(bool canDrain);
    ~StopScope();
    StopScope(const StopScope&) = delete;
    StopScope& operator=(const StopScope&) = delete;

    // Nobody answers to AbandonRequested any more.
    void endDrain();
};

// Whether the user wants the work to stop: finish the frame, save what is rendered, end. Any thread.
bool StopRequested();

// Whether the render thread is given up for lost: write what is queued, call MarkDrained and expect the end
// of the process. Any thread.
bool AbandonRequested();
void MarkDrained();

} // namespace fxhost
