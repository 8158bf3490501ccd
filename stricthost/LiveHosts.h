#pragma once

#include <string>

namespace stricthost {

class HostCore;

// Registers a host of this process for its lifetime. A callback that belongs to no command cannot be traced
// to one host, so it is reported to all of them. Any thread may use it.
class LiveHosts {
public:
    explicit LiveHosts(HostCore& host);
    ~LiveHosts();
    LiveHosts(const LiveHosts&) = delete;
    LiveHosts& operator=(const LiveHosts&) = delete;

    // Adds a violation to every registered host.
    static void Report(const std::string& text);

private:
    HostCore& m_Host;
};

} // namespace stricthost
