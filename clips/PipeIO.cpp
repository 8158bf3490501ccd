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

// Until something can be read; looks for a stop request every now and then.
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
        const ssize_t got = read(descriptor, static_cast<char*>(buffer) + done, bytes - done);
        if (got == 0)
            break;
        if (got < 0 && errno != EINTR && errno != EAGAIN)
            throw EffectFailure(std::string("reading failed: ") + std::strerror(errno));
        done += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    return done;
}

int WriteFully(int descriptor, const void* buffer, std::size_t bytes) {
    std::size_t done = 0;
    while (done < bytes) {
        const ssize_t put = write(descriptor, static_cast<const char*>(buffer) + done, bytes - done);
        if (put < 0 && errno == EAGAIN) {
            pollfd output{descriptor, POLLOUT, 0};
            poll(&output, 1, 100);
        } else if (put < 0 && errno != EINTR)
            return errno;
        done += put > 0 ? static_cast<std::size_t>(put) : 0;
    }
    return 0;
}

} // namespace fxhost
