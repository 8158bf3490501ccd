#include "clips/PipeIO.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <string>
#include <unistd.h>

#include "guard/StopRequest.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// Waits until the descriptor is readable, and checks for a stop request every 100 ms.
void AwaitInput(int descriptor) {
    pollfd input{descriptor, POLLIN, 0};
    while (poll(&input, 1, 100) <= 0)
        if (StopRequested())
            throw StoppedByUser();
}

} // namespace

std::size_t ReadFully(int descriptor, void* buffer, std::size_t bytes) {
    std::size_t done = 0;
    while (done < bytes) {
        AwaitInput(descriptor);
        const ssize_t count = read(descriptor, static_cast<char*>(buffer) + done, bytes - done);
        if (count == 0)
            break;
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            throw EffectFailure(std::string("cannot read: ") + std::strerror(errno));
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return done;
}

int WriteFully(int descriptor, const void* buffer, std::size_t bytes) {
    std::size_t done = 0;
    while (done < bytes) {
        const ssize_t count = write(descriptor, static_cast<const char*>(buffer) + done, bytes - done);
        if (count < 0 && errno == EAGAIN) {
            pollfd output{descriptor, POLLOUT, 0};
            poll(&output, 1, 100);
        } else if (count < 0 && errno != EINTR)
            return errno;
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return 0;
}

} // namespace fxhost
