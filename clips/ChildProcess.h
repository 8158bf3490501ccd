#pragma once

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

namespace fxhost {

// A program that runs beside the tool, with one pipe to or from it. Its own process group, so that Ctrl-C in
// a terminal reaches only the tool. What it prints on standard error is kept.
class ChildProcess {
public:
    enum class Pipe { ToItsInput, FromItsOutput };

    // The program is looked up in PATH. Throws EffectFailure when no process can be made; a program that does
    // not exist ends with status 127.
    ChildProcess(std::vector<std::string> arguments, Pipe pipe);
    // Ends a process that still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    int pipe() const { return m_Pipe; }
    void closePipe();
    // Whether wait would give its result at once.
    bool hasEnded();
    // Waits for the end; the exit status, or 128 and more after a signal.
    int wait();
    // Standard error so far, in one line of at most some 300 characters; the end of it when it is longer.
    std::string said() const;

private:
    void look(int flags);

    pid_t m_Process = -1;
    int m_Pipe = -1;
    int m_Errors = -1;
    int m_Status = -1;
};

// Runs a program to its end and gives what it printed. Throws EffectFailure, opened by `about`, when it
// fails.
std::string OutputOf(std::vector<std::string> arguments, const std::string& about);

// What went wrong with a program: its own words, or that it is not installed.
std::string FailureText(const std::string& program, int status, const std::string& said);

} // namespace fxhost
