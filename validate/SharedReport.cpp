#include "validate/SharedReport.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <new>
#include <stdexcept>
#include <sys/mman.h>

namespace validate {

namespace {

constexpr std::size_t s_Findings = 64, s_FindingBytes = 1024;
constexpr std::size_t s_Commands = 40, s_CommandBytes = 160;
std::mutex s_Mutex; // of this process

void CopyText(char* to, std::size_t capacity, const std::string& text) {
    const std::size_t length = std::min(text.size(), capacity - 1);
    std::memcpy(to, text.data(), length);
    to[length] = 0;
}

} // namespace

struct SharedReport::Memory {
    std::size_t findings = 0;
    char finding[s_Findings][s_FindingBytes];
    std::size_t commands = 0; // ever begun
    struct {
        char text[s_CommandBytes];
        bool returned;
        long error;
    } command[s_Commands];
};

SharedReport::SharedReport() {
    void* memory = mmap(nullptr, sizeof(Memory), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::runtime_error("no shared memory for the report of a test");
    m_Memory = new (memory) Memory;
}

SharedReport::~SharedReport() {
    munmap(m_Memory, sizeof(Memory));
}

void SharedReport::AddFinding(const std::string& text) {
    const std::lock_guard lock(s_Mutex);
    char kept[s_FindingBytes];
    CopyText(kept, sizeof kept, text);
    for (std::size_t i = 0; i < m_Memory->findings; ++i)
        if (std::strcmp(m_Memory->finding[i], kept) == 0)
            return;
    if (m_Memory->findings < s_Findings)
        std::memcpy(m_Memory->finding[m_Memory->findings++], kept, sizeof kept);
}

std::size_t SharedReport::BeginCommand(const std::string& text) {
    const std::lock_guard lock(s_Mutex);
    const std::size_t number = m_Memory->commands++;
    auto& command = m_Memory->command[number % s_Commands];
    CopyText(command.text, sizeof command.text, text);
    command.returned = false;
    return number;
}

void SharedReport::EndCommand(std::size_t number, long error) {
    const std::lock_guard lock(s_Mutex);
    if (m_Memory->commands - number > s_Commands)
        return; // its place in the log holds a later command
    m_Memory->command[number % s_Commands].returned = true;
    m_Memory->command[number % s_Commands].error = error;
}

std::vector<std::string> SharedReport::Findings() const {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < m_Memory->findings; ++i)
        texts.emplace_back(m_Memory->finding[i]);
    return texts;
}

std::size_t SharedReport::CommandCount() const {
    return m_Memory->commands;
}

std::vector<std::string> SharedReport::Log() const {
    std::vector<std::string> lines;
    const std::size_t end = m_Memory->commands;
    for (std::size_t i = end - std::min(end, s_Commands); i < end; ++i) {
        const auto& command = m_Memory->command[i % s_Commands];
        std::string line = std::to_string(i + 1) + " " + command.text;
        if (!command.returned)
            line += ": did not return";
        else if (command.error != 0)
            line += ": error " + std::to_string(command.error);
        lines.push_back(line);
    }
    return lines;
}

} // namespace validate
