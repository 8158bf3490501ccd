#include "clips/NumberPattern.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A placeholder at the beginning of a text.
struct Placeholder {
    std::size_t length; // of the placeholder itself
    unsigned width;     // smallest number of digits
};

// Reads "%d" or "%0Nd".
std::optional<Placeholder> ReadPercentForm(std::string_view text) {
    std::size_t end = 1;
    unsigned width = 1;
    if (text.size() > 2 && text[1] == '0' && text[2] > '0' && IsDigit(text[2])) {
        width = static_cast<unsigned>(text[2] - '0');
        end = 3;
    }
    if (text[0] != '%' || end >= text.size() || text[end] != 'd')
        return std::nullopt;
    return Placeholder{end + 1, width};
}

std::optional<Placeholder> ReadHashes(std::string_view text) {
    const std::size_t length = std::min(text.find_first_not_of('#'), text.size());
    if (length == 0)
        return std::nullopt;
    return Placeholder{length, static_cast<unsigned>(length)};
}

bool HasPercentForm(std::string_view name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name.substr(i, 2) == "%%")
            ++i;
        else if (ReadPercentForm(name.substr(i)))
            return true;
    }
    return false;
}

} // namespace

std::optional<NumberPattern> NumberPattern::Parse(const std::string& option, const std::string& path) {
    NumberPattern pattern;
    pattern.m_Text = path;
    const auto slash = path.rfind('/');
    pattern.m_Folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    const std::string_view name = std::string_view(path).substr(pattern.m_Folder.size());
    const bool percents = HasPercentForm(name);

    bool found = false;
    for (std::size_t i = 0; i < name.size();) {
        const auto placeholder = percents ? ReadPercentForm(name.substr(i)) : ReadHashes(name.substr(i));
        if (!placeholder) {
            i += percents && name.substr(i, 2) == "%%" ? 1 : 0;
            (found ? pattern.m_After : pattern.m_Before) += name[i++];
            continue;
        }
        if (found)
            throw WrongUse(option + " " + path +
                           ": has two placeholders for the number; expected one, such as name_%04d.png or "
                           "name_####.png");
        found = true;
        pattern.m_Width = placeholder->width;
        i += placeholder->length;
    }
    if (!found)
        return std::nullopt;
    return pattern;
}

std::string NumberPattern::digits(long number) const {
    std::string text = std::to_string(number);
    if (text.size() < m_Width)
        text.insert(0, m_Width - text.size(), '0');
    return text;
}

std::string NumberPattern::path(long number) const {
    return m_Folder + m_Before + digits(number) + m_After;
}

std::string NumberPattern::normalizedPath() const {
    return m_Folder + m_Before + std::string(m_Width, '#') + m_After;
}

std::optional<long> NumberPattern::numberIn(const std::string& name) const {
    if (name.size() <= m_Before.size() + m_After.size() || !name.starts_with(m_Before) ||
        !name.ends_with(m_After))
        return std::nullopt;
    const std::string text = name.substr(m_Before.size(), name.size() - m_Before.size() - m_After.size());
    long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || text != digits(number))
        return std::nullopt;
    return number;
}

std::vector<long> NumberPattern::numbersOnDisk() const {
    std::vector<long> numbers;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(m_Folder.empty() ? "." : m_Folder, ignored))
        if (const auto number = numberIn(entry.path().filename().string()))
            numbers.push_back(*number);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

// The name of an unfinished picture is ".STEM.PROCESS.EXTENSION", with the number of the writing process.
void NumberPattern::removeLeftovers(const std::set<long>& numbers) const {
    std::error_code ignored;
    std::vector<fs::path> leftovers;
    for (const auto& entry : fs::directory_iterator(m_Folder.empty() ? "." : m_Folder, ignored)) {
        const fs::path name = entry.path().filename();
        const std::string process = name.stem().extension().string(); // ".PROCESS"
        const std::string stem = name.stem().stem().string();
        if (!stem.starts_with('.') || process.size() < 2 ||
            !std::all_of(process.begin() + 1, process.end(), IsDigit))
            continue;
        const auto number = numberIn(stem.substr(1) + name.extension().string());
        if (number && numbers.contains(*number))
            leftovers.push_back(entry.path());
    }
    for (const auto& path : leftovers)
        fs::remove(path, ignored);
}

} // namespace fxhost
