#include "guard/Guard.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>
#include <poll.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "guard/ErrorReport.h"
#include "guard/GuardChannel.h"
#include "guard/Memory.h"
#include "guard/StopSignals.h"
#include "guard/Watchdog.h"
#include "platform/System.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

constexpr int s_PollMilliseconds = 20;

void OnNewFailure() {
    CurrentStatus().outOfMemory = true;
    throw std::bad_alloc();
}

// Ends this process as soon as the parent is gone.
void DieWithParent(int socket) {
    std::thread([socket] {
        char unused;
        while (read(socket, &unused, 1) < 0 && errno == EINTR) {
        }
        _exit(128 + SIGKILL);
    }).detach();
}

[[noreturn]] void RunChild(GuardChannel& channel, std::uint64_t memoryBytes,
                           const std::function<int()>& work) {
    channel.keepEnd(GuardChannel::End::Child);
    SetCurrentStatus(&channel.status());
    signal(SIGINT, SIG_IGN); // A terminal signals both processes; the parent passes the signal on.
    signal(SIGHUP, SIG_IGN);
    // The hard limit is higher than the watched one, so that the parent is the first to notice slow growth.
    LimitMemory(memoryBytes + memoryBytes / 8 + (64u << 20));
    std::set_new_handler(OnNewFailure);
    DieWithParent(channel.socket());
    const int status = RunAndReport(work);
    std::fflush(nullptr);
    // Not exit(): the image library's logger started threads before the fork, and exit() would wait for them.
    _exit(status);
}

// Waits until the child ends, a signal arrives or the poll period is over. Returns true when it has ended.
bool HasEnded(int socket, pid_t child, int& status) {
    pollfd end{socket, POLLIN, 0};
    poll(&end, 1, s_PollMilliseconds);
    pid_t ended;
    do
        ended = waitpid(child, &status, end.revents ? 0 : WNOHANG);
    while (ended < 0 && errno == EINTR);
    return ended != 0;
}

int RunParent(GuardChannel& channel, pid_t child, const GuardLimits& limits, const std::string& effect,
              StopSignals& signals) {
    channel.keepEnd(GuardChannel::End::Parent);
    Watchdog watchdog(channel.status(), limits, effect);
    int status = 0, passedOn = 0;
    while (!HasEnded(channel.socket(), child, status)) {
        if (signals.count() > passedOn)
            kill(child, passedOn++ == 0 ? SIGTERM : SIGKILL);
        switch (watchdog.check(ProcessDataBytes(child))) {
        case Watchdog::Action::None:
            break;
        case Watchdog::Action::Stop:
            kill(child, SIGTERM);
            break;
        case Watchdog::Action::Kill:
            kill(child, SIGKILL);
        }
    }
    const SharedStatus& shared = channel.status();
    ReportWritten(shared.written, shared.total, shared.resumable); // The channel ends with this run.
    return watchdog.exitStatusFor(status, passedOn > 0 ? signals.first() : 0);
}

// Observes this process from a background thread until the object is destroyed.
class WatchdogThread {
public:
    WatchdogThread(const GuardLimits& limits, const std::string& effect)
        : m_Watchdog(CurrentStatus(), limits, effect), m_Thread([this] { run(); }) {}
    ~WatchdogThread() {
        m_IsOver = true;
        m_Thread.join();
    }
    WatchdogThread(const WatchdogThread&) = delete;
    WatchdogThread& operator=(const WatchdogThread&) = delete;

private:
    void run() {
        while (!m_IsOver) {
            const Watchdog::Action action = m_Watchdog.check(ProcessDataBytes(getpid()));
            if (action == Watchdog::Action::Stop)
                kill(getpid(), SIGTERM); // StopScope handles it, because canDrain is set.
            if (action == Watchdog::Action::Kill)
                _exit(m_Watchdog.exitStatusFor(0, 0));
            std::this_thread::sleep_for(std::chrono::milliseconds(s_PollMilliseconds));
        }
    }

    Watchdog m_Watchdog;
    std::atomic<bool> m_IsOver{false};
    std::thread m_Thread;
};

} // namespace

int RunGuarded(const GuardLimits& limits, const std::string& effect, const std::function<int()>& work) {
    GuardLimits effective = limits;
    if (effective.memoryBytes == 0)
        effective.memoryBytes = MachineMemory() / 4 * 3;
    // The limit does not count what the process uses before the work starts.
    effective.memoryBytes += ProcessDataBytes(getpid()).value_or(0);
    if (!limits.fork) {
        const WatchdogThread watchdog(effective, effect);
        return RunAndReport(work);
    }
    GuardChannel channel;
    std::fflush(nullptr);
    StopSignals signals; // Installed before the fork, so that no signal is lost in between.
    const pid_t child = fork();
    if (child < 0)
        throw EffectFailure(std::string("cannot start a guarded process: ") + std::strerror(errno));
    if (child == 0) {
        signals.restore();
        RunChild(channel, effective.memoryBytes, work);
    }
    return RunParent(channel, child, effective, effect, signals);
}

} // namespace fxhost
