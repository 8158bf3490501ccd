#include "gpu/AuthorLines.h"

#include <cctype>
#include <cstdlib>
#include <string_view>

namespace {

std::size_t EndOfDigits(const std::string& text, std::size_t at) {
    while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])))
        ++at;
    return at;
}

// "1:7(3): error", "ERROR: 0:7: ..." and "0(7) : error": the second number is the line.
std::string WithAuthorLine(const std::string& message, unsigned inFront, unsigned preamble) {
    std::size_t first = 0;
    for (const std::string_view severity : {"ERROR: ", "WARNING: "})
        if (message.starts_with(severity))
            first = severity.size();
    const std::size_t separator = EndOfDigits(message, first);
    if (separator == first || separator == message.size() ||
        (message[separator] != ':' && message[separator] != '('))
        return message;
    const std::size_t end = EndOfDigits(message, separator + 1);
    if (end == separator + 1 || end - separator > 9)
        return message;
    const bool isJoined = std::atoi(message.c_str() + first) == 0;
    const int line = std::atoi(message.c_str() + separator + 1) - static_cast<int>(inFront) -
                     static_cast<int>(isJoined ? preamble : 0);
    if (line < 1)
        return message;
    return message.substr(0, separator + 1) + std::to_string(line) + message.substr(end);
}

} // namespace

std::string ToAuthorLines(const std::string& log, unsigned inFront, unsigned preamble) {
    std::string result;
    for (std::size_t begin = 0; begin < log.size();) {
        const std::size_t end = log.find('\n', begin);
        const std::size_t next = end == std::string::npos ? log.size() : end + 1;
        result += WithAuthorLine(log.substr(begin, next - begin), inFront, preamble);
        begin = next;
    }
    return result;
}
