#pragma once

#include <string>

namespace fxhost {

// Catches the standard error of a program in an unnamed temporary file, and gives its last lines.
class StderrTail {
public:
    // Without a temporary file, descriptor() is -1 and text() is empty.
    StderrTail();
    ~StderrTail();
    StderrTail(const StderrTail&) = delete;
    StderrTail& operator=(const StderrTail&) = delete;

    // To be used as the program's standard error. Closed on exec.
    int descriptor() const { return m_Descriptor; }
    // The last complete lines, at most 300 bytes, joined by blanks.
    std::string text() const;

private:
    int m_Descriptor = -1;
};

} // namespace fxhost
