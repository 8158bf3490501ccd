#include "clips/ChildProcess.h"

#include <algorithm>
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

constexpr int s_NotFound = 127;

// Pipes get their close-on-exec flag before any other thread starts a program.
std::mutex s_StartMutex;

void CloseOnExec(int descriptor) {
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

// A file without a name for what the program says.
int OpenErrorFile() {
    std::FILE* file = std::tmpfile();
    if (!file)
        return -1;
    const int descriptor = dup(fileno(file));
    std::fclose(file);
    return descriptor;
}

[[noreturn]] void Become(char** arguments, int input, int output, int errors) {
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
        throw EffectFailure(arguments[0] + ": no pipe can be made: " + std::strerror(errno));
    m_Errors = OpenErrorFile();
    for (const int descriptor : {ends[0], ends[1], m_Errors})
        CloseOnExec(descriptor);
    const bool toInput = direction == Pipe::ToItsInput;
    m_Process = fork();
    if (m_Process == 0)
        Become(texts.data(), toInput ? ends[0] : -1, toInput ? -1 : ends[1], m_Errors);
    close(ends[toInput ? 0 : 1]);
    m_Pipe = ends[toInput ? 1 : 0];
    if (m_Process < 0)
        throw EffectFailure(arguments[0] + ": cannot be started: " + std::strerror(errno));
#ifdef F_SETPIPE_SZ
    fcntl(m_Pipe, F_SETPIPE_SZ, 1 << 20); // fewer switches for big frames
#endif
}

ChildProcess::~ChildProcess() {
    closePipe();
    if (m_Process > 0 && m_Status < 0) {
        kill(m_Process, SIGKILL);
        wait();
    }
    if (m_Errors >= 0)
        close(m_Errors);
}

void ChildProcess::closePipe() {
    if (m_Pipe >= 0)
        close(m_Pipe);
    m_Pipe = -1;
}

void ChildProcess::look(int flags) {
    int status = 0;
    const pid_t ended = waitpid(m_Process, &status, flags);
    if (ended < 0 && errno != EINTR)
        m_Status = s_NotFound;
    else if (ended > 0)
        m_Status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

bool ChildProcess::hasEnded() {
    if (m_Status < 0)
        look(WNOHANG);
    return m_Status >= 0;
}

int ChildProcess::wait() {
    while (m_Status < 0)
        look(0);
    return m_Status;
}

std::string ChildProcess::said() const {
    constexpr off_t most = 300;
    const off_t size = m_Errors < 0 ? 0 : lseek(m_Errors, 0, SEEK_END);
    std::string text(static_cast<std::size_t>(std::min(size, most)), '\0');
    const ssize_t got =
        text.empty() ? 0 : pread(m_Errors, text.data(), text.size(), std::max<off_t>(0, size - most));
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    if (size > most) // whole lines only
        text.erase(0, text.find('\n') == std::string::npos ? 0 : text.find('\n') + 1);
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::string FailureText(const std::string& program, int status, const std::string& said) {
    if (status == s_NotFound)
        return "the program " + program + " is needed for video and cannot be started; is it installed?";
    return program + " failed" + (said.empty() ? " with status " + std::to_string(status) : ": " + said);
}

std::string OutputOf(std::vector<std::string> arguments, const std::string& about) {
    const std::string program = arguments[0];
    ChildProcess process(std::move(arguments), ChildProcess::Pipe::FromItsOutput);
    std::string output;
    char buffer[4096];
    while (const std::size_t got = ReadFully(process.pipe(), buffer, sizeof buffer))
        output.append(buffer, got);
    if (const int status = process.wait())
        throw EffectFailure(about + ": " + FailureText(program, status, process.said()));
    return output;
}

} // namespace fxhost
