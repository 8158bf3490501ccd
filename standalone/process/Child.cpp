#include "standalone/process/Child.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace fxhost {

namespace {

class Descriptor {
public:
    explicit Descriptor(int number) : m_Number(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Number() const { return m_Number; }
    void Close() {
        if (m_Number >= 0)
            ::close(m_Number);
        m_Number = -1;
    }

private:
    int m_Number;
};

void WriteAll(int descriptor, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t wrote = ::write(descriptor, text.data() + done, text.size() - done);
        if (wrote < 0 && errno != EINTR)
            return; // the parent is gone
        if (wrote > 0)
            done += static_cast<std::size_t>(wrote);
    }
}

// False when nothing came in time. At the end of the stream `ended` is set.
bool ReadMore(int descriptor, std::chrono::milliseconds patience, std::string& pending, bool& ended) {
    pollfd waiting{descriptor, POLLIN, 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(patience.count()));
    if (ready == 0)
        return false;
    char block[4096];
    const ssize_t got = ready > 0 ? ::read(descriptor, block, sizeof block) : -1;
    if (got < 0 && errno == EINTR)
        return true;
    ended = got <= 0;
    if (got > 0)
        pending.append(block, static_cast<std::size_t>(got));
    return true;
}

ChildEnd Wait(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status))
        return {ChildEnd::How::Crashed, 0, WTERMSIG(status)};
    return {ChildEnd::How::Exited, WEXITSTATUS(status), 0};
}

} // namespace

ChildEnd RunInChild(const std::function<int(const SendLine&)>& work, std::chrono::milliseconds patience,
                    const std::function<void(const std::string& line)>& heard) {
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error(std::string("no pipe can be made: ") + std::strerror(errno));
    Descriptor reading(ends[0]), writing(ends[1]);
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0)
        throw std::runtime_error(std::string("no process can be made: ") + std::strerror(errno));
    if (child == 0) {
        reading.Close();
        const int status = work([&](const std::string& line) { WriteAll(writing.Number(), line + "\n"); });
        std::fflush(nullptr);
        ::_exit(status);
    }
    writing.Close();
    std::string pending;
    for (bool ended = false; !ended;) {
        if (!ReadMore(reading.Number(), patience, pending, ended)) {
            ::kill(child, SIGKILL);
            Wait(child);
            return {ChildEnd::How::Silent, 0, SIGKILL};
        }
        for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
            heard(pending.substr(0, end));
            pending.erase(0, end + 1);
        }
    }
    return Wait(child);
}

} // namespace fxhost
