#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include "clips/StderrTail.h"

namespace fxhost {

// A program that runs beside the tool, with one pipe to or from it. It has its own process group, so that
// Ctrl-C in a terminal reaches only the tool.
class ChildProcess {
public:
    enum class Pipe { ToStdin, FromStdout };

    // arguments[0] is looked up in PATH. Throws EffectFailure when no process can be created. A program that
    // does not exist ends with exit status 127.
    ChildProcess(std::vector<std::string> arguments, Pipe pipe);
    // Kills the process if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Descriptor of this side of the pipe; owned by this object.
    int pipe() const { return m_Pipe; }
    void closePipe();
    // True when wait() would return at once.
    bool hasEnded();
    // Waits for the end. Returns the exit status, or 128 plus the number of the signal that ended the
    // process.
    int wait();
    // The last lines of standard error, joined to one.
    std::string stderrText() const { return m_Stderr.text(); }

private:
    void reap(int flags);

    pid_t m_Process = -1;
    int m_Pipe = -1;
    StderrTail m_Stderr;
    int m_Status = -1;
};

// Runs a program to its end and returns its standard output. When it fails, throws EffectFailure whose text
// starts with `subject`.
std::string OutputOf(std::vector<std::string> arguments, const std::string& subject);

// Describes the failure of a program: its own error text, or that it is not installed.
std::string FailureText(const std::string& program, int status, const std::string& stderrText);

} // namespace fxhost
