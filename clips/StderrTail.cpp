#include "clips/StderrTail.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace fxhost {

namespace {

constexpr off_t s_MaxBytes = 300;

} // namespace

StderrTail::StderrTail() {
    std::FILE* file = std::tmpfile();
    if (!file)
        return;
    m_Descriptor = fcntl(fileno(file), F_DUPFD_CLOEXEC, 0);
    std::fclose(file);
}

StderrTail::~StderrTail() {
    if (m_Descriptor >= 0)
        close(m_Descriptor);
}

std::string StderrTail::text() const {
    const off_t size = m_Descriptor < 0 ? 0 : lseek(m_Descriptor, 0, SEEK_END);
    std::string text(static_cast<std::size_t>(std::min(size, s_MaxBytes)), '\0');
    const ssize_t count =
        text.empty() ? 0
                     : pread(m_Descriptor, text.data(), text.size(), std::max<off_t>(0, size - s_MaxBytes));
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    if (size > s_MaxBytes) // The first line is probably incomplete.
        text.erase(0, text.find('\n') == std::string::npos ? 0 : text.find('\n') + 1);
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace fxhost
