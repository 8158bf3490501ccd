#include "guard/Guard.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "guard/Board.h"
#include "guard/Memory.h"
#include "guard/Outcome.h"
#include "guard/Watch.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// The board and a line between parent and child on which each sees the other's end.
class Link {
public:
    Link() {
        void* memory =
            mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, m_Ends) != 0)
            throw EffectFailure(std::string("a guarded process cannot be started: ") + std::strerror(errno));
        m_Board = new (memory) Board;
    }
    ~Link() {
        close(m_Ends[m_Own]);
        munmap(m_Board, sizeof(Board));
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    Board& board() { return *m_Board; }
    int line() const { return m_Ends[m_Own]; }
    void takeEnd(int own) {
        m_Own = own;
        close(m_Ends[1 - own]);
    }

private:
    Board* m_Board = nullptr;
    int m_Ends[2] = {-1, -1};
    int m_Own = 0;
};

void OnNewFailure() {
    CurrentBoard().outOfMemory = true;
    throw std::bad_alloc();
}

[[noreturn]] void RunChild(Link& link, std::uint64_t memoryBytes, const std::function<int()>& work) {
    link.takeEnd(1);
    SetCurrentBoard(&link.board());
    signal(SIGINT, SIG_IGN); // a terminal sends it to both; the parent passes it on
    signal(SIGHUP, SIG_IGN);
    // Above the watched limit, so that the parent is the one to end a slow growth.
    LimitMemory(memoryBytes + memoryBytes / 8 + (64u << 20));
    std::set_new_handler(OnNewFailure);
    std::thread([line = link.line()] {
        char nothing;
        while (read(line, &nothing, 1) < 0 && errno == EINTR) {
        }
        _exit(128 + SIGKILL); // the parent is gone
    }).detach();
    const int status = StatusOf(work);
    std::fflush(nullptr);
    // Not exit(): picture libraries bring a logger that started threads before the fork and waits for them.
    _exit(status);
}

volatile std::sig_atomic_t s_Signals = 0;

void OnSignal(int) {
    s_Signals = s_Signals + 1;
}

// Counts stop signals while it lives.
class SignalCount {
public:
    SignalCount() {
        s_Signals = 0;
        struct sigaction action {};
        action.sa_handler = OnSignal;
        for (int i = 0; i < 3; ++i)
            sigaction(s_Caught[i], &action, &m_Old[i]);
    }
    ~SignalCount() { restore(); }
    SignalCount(const SignalCount&) = delete;
    SignalCount& operator=(const SignalCount&) = delete;

    void restore() {
        for (int i = 0; i < 3; ++i)
            sigaction(s_Caught[i], &m_Old[i], nullptr);
    }
    int count() const { return s_Signals; }

private:
    static constexpr int s_Caught[] = {SIGINT, SIGTERM, SIGHUP};
    struct sigaction m_Old[3];
};

// Waits up to 20 ms, less when the child ends or a signal comes; then whether the child has ended.
bool Ended(int line, pid_t child, int& status) {
    pollfd end{line, POLLIN, 0};
    poll(&end, 1, 20);
    pid_t ended;
    do
        ended = waitpid(child, &status, end.revents ? 0 : WNOHANG);
    while (ended < 0 && errno == EINTR);
    return ended != 0;
}

int RunParent(Link& link, pid_t child, const GuardLimits& limits, const std::string& effect,
              SignalCount& signals) {
    link.takeEnd(0);
    Watch watch(link.board(), limits, effect);
    int status = 0, passed = 0;
    while (!Ended(link.line(), child, status)) {
        if (signals.count() > passed)
            kill(child, passed++ == 0 ? SIGTERM : SIGKILL);
        switch (watch.look(DataBytes(child))) {
        case Watch::Order::None:
            break;
        case Watch::Order::Stop:
            kill(child, SIGTERM);
            break;
        case Watch::Order::Kill:
            kill(child, SIGKILL);
        }
    }
    return watch.verdict(status, passed > 0);
}

} // namespace

int RunGuarded(const GuardLimits& limits, const std::string& effect, const std::function<int()>& work) {
    GuardLimits effective = limits;
    if (effective.memoryBytes == 0)
        effective.memoryBytes = MachineMemory() / 4 * 3;
    // What the process has before the work starts does not count.
    const std::uint64_t ceiling = effective.memoryBytes + DataBytes(getpid()).value_or(0);
    Link link;
    std::fflush(nullptr);
    SignalCount signals; // before the fork, so that none is lost in between
    const pid_t child = fork();
    if (child < 0)
        throw EffectFailure(std::string("a guarded process cannot be started: ") + std::strerror(errno));
    if (child == 0) {
        signals.restore();
        RunChild(link, ceiling, work);
    }
    effective.memoryBytes = ceiling;
    return RunParent(link, child, effective, effect, signals);
}

} // namespace fxhost
