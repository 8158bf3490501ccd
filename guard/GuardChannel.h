#pragma once

#include "guard/SharedStatus.h"

namespace fxhost {

// The connection between the guarding parent and its child: a shared memory block with the status, and a
// socket pair on which each process notices the end of the other. Create it before the fork.
class GuardChannel {
public:
    // Throws EffectFailure when the system has no memory or sockets left.
    GuardChannel();
    // Closes this process's end. The status block disappears with it.
    ~GuardChannel();
    GuardChannel(const GuardChannel&) = delete;
    GuardChannel& operator=(const GuardChannel&) = delete;

    enum class End { Parent, Child };
    // Keeps one end of the socket pair and closes the other. Call it once in each process after the fork.
    void keepEnd(End end);

    SharedStatus& status() { return *m_Status; }
    // Becomes readable when the other process has ended.
    int socket() const { return m_Sockets[m_Kept]; }

private:
    SharedStatus* m_Status = nullptr;
    int m_Sockets[2] = {-1, -1};
    int m_Kept = 0;
};

} // namespace fxhost
