#include "guard/GuardChannel.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include "toolkit/Errors.h"

namespace fxhost {

GuardChannel::GuardChannel() {
    void* memory =
        mmap(nullptr, sizeof(SharedStatus), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED || socketpair(AF_UNIX, SOCK_STREAM, 0, m_Sockets) != 0)
        throw EffectFailure(std::string("cannot start a guarded process: ") + std::strerror(errno));
    for (const int socket : m_Sockets)
        fcntl(socket, F_SETFD, FD_CLOEXEC); // no other thread starts programs yet
    m_Status = new (memory) SharedStatus;
}

GuardChannel::~GuardChannel() {
    close(m_Sockets[m_Kept]);
    munmap(m_Status, sizeof(SharedStatus));
}

void GuardChannel::keepEnd(End end) {
    m_Kept = end == End::Parent ? 0 : 1;
    close(m_Sockets[1 - m_Kept]);
}

} // namespace fxhost
