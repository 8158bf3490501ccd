#include "clips/NumberPattern.h"

#include <algorithm>
#include <cctype>
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

// Reads a run of this character, of which each one is a digit.
std::optional<Placeholder> ReadRun(std::string_view text, char character) {
    const std::size_t length = std::min(text.find_first_not_of(character), text.size());
    if (length == 0)
        return std::nullopt;
    return Placeholder{length, static_cast<unsigned>(length)};
}

std::optional<Placeholder> ReadHashes(std::string_view text) {
    return ReadRun(text, '#');
}

// Names such as "icon@2x.png" have no number.
std::optional<Placeholder> ReadAtSigns(std::string_view text) {
    const auto found = ReadRun(text, '@');
    const bool isName =
        found && found->length < text.size() && std::isalnum(static_cast<unsigned char>(text[found->length]));
    return isName ? std::nullopt : found;
}

// Reads "$F" or "$FN".
std::optional<Placeholder> ReadDollarForm(std::string_view text) {
    if (!text.starts_with("$F"))
        return std::nullopt;
    const bool hasWidth = text.size() > 2 && text[2] > '0' && IsDigit(text[2]);
    return hasWidth ? Placeholder{3, static_cast<unsigned>(text[2] - '0')} : Placeholder{2, 1};
}

std::optional<Placeholder> ReadStar(std::string_view text) {
    return text.starts_with('*') ? std::optional(Placeholder{1, 1}) : std::nullopt;
}

using Reader = std::optional<Placeholder> (*)(std::string_view);
// In order of precedence: a name has one kind of placeholder, and the characters of the others are text.
constexpr Reader s_Readers[] = {ReadPercentForm, ReadHashes, ReadDollarForm, ReadAtSigns, ReadStar};

bool IsEscape(std::string_view text) {
    return text.size() > 1 && text[0] == '\\' &&
           std::string_view("#%@$*?\\").find(text[1]) != std::string_view::npos;
}

// Characters of plain text at the beginning that count as one; 1 or 2.
std::size_t PlainLength(std::string_view text, Reader reader) {
    return IsEscape(text) || (reader == ReadPercentForm && text.starts_with("%%")) ? 2 : 1;
}

bool Has(std::string_view name, Reader reader) {
    for (std::size_t i = 0; i < name.size(); i += PlainLength(name.substr(i), reader))
        if (!IsEscape(name.substr(i)) && reader(name.substr(i)))
            return true;
    return false;
}

} // namespace

std::optional<NumberPattern> NumberPattern::Parse(const std::string& option, const std::string& path) {
    NumberPattern pattern;
    pattern.m_Text = path;
    const auto slash = path.rfind('/');
    pattern.m_Folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    const std::string_view name = std::string_view(path).substr(pattern.m_Folder.size());
    const auto* const reader = std::find_if(std::begin(s_Readers), std::end(s_Readers),
                                            [&](Reader candidate) { return Has(name, candidate); });
    if (reader == std::end(s_Readers))
        return std::nullopt;

    bool found = false;
    for (std::size_t i = 0; i < name.size();) {
        const auto rest = name.substr(i);
        const auto placeholder = IsEscape(rest) ? std::nullopt : (*reader)(rest);
        if (!placeholder) {
            const std::size_t length = PlainLength(rest, *reader);
            (found ? pattern.m_After : pattern.m_Before) += rest[length - 1];
            i += length;
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
    if (*reader == ReadStar)
        pattern.findWidth(option);
    return pattern;
}

// Takes the number of digits from the files. Numbers with leading zeros have a fixed width.
void NumberPattern::findWidth(const std::string& option) {
    if (option == "--output")
        throw WrongUse(option + " " + m_Text + ": expected the number of digits, such as name_####.png");
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(m_Folder.empty() ? "." : m_Folder, ignored)) {
        const std::string name = entry.path().filename().string();
        const std::size_t around = m_Before.size() + m_After.size();
        if (name.size() <= around || !name.starts_with(m_Before) || !name.ends_with(m_After))
            continue;
        const std::string number = name.substr(m_Before.size(), name.size() - around);
        if (number[0] == '0' && std::all_of(number.begin(), number.end(), IsDigit))
            m_Width = std::max(m_Width, static_cast<unsigned>(number.size()));
    }
}

std::string PlainPath(const std::string& path) {
    std::error_code ignored;
    if (path.find('\\') == std::string::npos || fs::exists(path, ignored))
        return path;
    std::string plain;
    for (std::size_t i = 0; i < path.size(); ++i) {
        i += IsEscape(std::string_view(path).substr(i)) ? 1 : 0;
        plain += path[i];
    }
    return plain;
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
