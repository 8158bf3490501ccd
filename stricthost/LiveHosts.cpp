#include "stricthost/LiveHosts.h"

#include <mutex>
#include <set>

#include "stricthost/HostCore.h"

namespace stricthost {

namespace {

std::mutex s_Mutex;
std::set<HostCore*> s_Hosts;

} // namespace

LiveHosts::LiveHosts(HostCore& host) : m_Host(host) {
    const std::lock_guard lock(s_Mutex);
    s_Hosts.insert(&host);
}

LiveHosts::~LiveHosts() {
    const std::lock_guard lock(s_Mutex);
    s_Hosts.erase(&m_Host);
}

void LiveHosts::Report(const std::string& text) {
    const std::lock_guard lock(s_Mutex);
    for (HostCore* host : s_Hosts)
        host->violations.Add(text);
}

} // namespace stricthost
