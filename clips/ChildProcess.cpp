#include "clips/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <sys/wait.h>
#include <unistd.h>

#include "clips/PipeIO.h"
#include "guard/Memory.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

constexpr int s_NotFound = 127; // exit status of a program that cannot be started

// Held from pipe() to fork(), so that no other thread starts a program before the new pipe is close-on-exec.
std::mutex s_StartMutex;

// Replaces the forked process by the program. A negative descriptor means /dev/null.
[[noreturn]] void ExecProgram(char** arguments, int input, int output, int errors) {
    setpgid(0, 0);
    LiftMemoryLimit();
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        signal(signalNumber, SIG_DFL);
    const int null = open("/dev/null", O_RDWR);
    dup2(input >= 0 ? input : null, 0);
    dup2(output >= 0 ? output : null, 1);
    dup2(errors >= 0 ? errors : null, 2);
    execvp(arguments[0], arguments);
    _exit(s_NotFound);
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> arguments, Pipe direction) {
    std::vector<char*> texts;
    for (std::string& argument : arguments)
        texts.push_back(argument.data());
    texts.push_back(nullptr);

    const std::lock_guard lock(s_StartMutex);
    int ends[2];
    if (::pipe(ends) != 0)
        throw EffectFailure(arguments[0] + ": cannot create a pipe: " + std::strerror(errno));
    for (const int descriptor : ends)
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    const bool toInput = direction == Pipe::ToStdin;
    m_Process = fork();
    if (m_Process == 0)
        ExecProgram(texts.data(), toInput ? ends[0] : -1, toInput ? -1 : ends[1], m_Stderr.descriptor());
    close(ends[toInput ? 0 : 1]);
    m_Pipe = ends[toInput ? 1 : 0];
    if (m_Process < 0)
        throw EffectFailure(arguments[0] + ": cannot start the program: " + std::strerror(errno));
#ifdef F_SETPIPE_SZ
    fcntl(m_Pipe, F_SETPIPE_SZ, 1 << 20); // A larger buffer needs fewer task switches per frame.
#endif
}

ChildProcess::~ChildProcess() {
    closePipe();
    if (m_Process > 0 && m_Status < 0) {
        kill(m_Process, SIGKILL);
        wait();
    }
}

void ChildProcess::closePipe() {
    if (m_Pipe >= 0)
        close(m_Pipe);
    m_Pipe = -1;
}

void ChildProcess::reap(int flags) {
    int status = 0;
    const pid_t ended = waitpid(m_Process, &status, flags);
    if (ended < 0 && errno != EINTR)
        m_Status = s_NotFound;
    else if (ended > 0)
        m_Status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

bool ChildProcess::hasEnded() {
    if (m_Status < 0)
        reap(WNOHANG);
    return m_Status >= 0;
}

int ChildProcess::wait() {
    while (m_Status < 0)
        reap(0);
    return m_Status;
}

std::string FailureText(const std::string& program, int status, const std::string& stderrText) {
    if (status == s_NotFound)
        return "the program " + program + " is needed for video and cannot be started; is it installed?";
    return program + " failed" +
           (stderrText.empty() ? " with status " + std::to_string(status) : ": " + stderrText);
}

std::string OutputOf(std::vector<std::string> arguments, const std::string& subject) {
    const std::string program = arguments[0];
    ChildProcess process(std::move(arguments), ChildProcess::Pipe::FromStdout);
    std::string output;
    char buffer[4096];
    while (const std::size_t count = ReadFully(process.pipe(), buffer, sizeof buffer))
        output.append(buffer, count);
    if (const int status = process.wait())
        throw EffectFailure(subject + ": " + FailureText(program, status, process.stderrText()));
    return output;
}

} // namespace fxhost
