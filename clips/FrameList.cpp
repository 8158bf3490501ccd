#include "clips/FrameList.h"

#include <algorithm>

#include "clips/NumberText.h"
#include "toolkit/Errors.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

FrameList FrameList::Parse(const std::string& text) {
    FrameList list;
    for (const std::string& piece : Split(text, ',')) {
        const std::string part = Trimmed(piece);
        const Halves step = SplitAt(part, 'x'), ends = SplitAt(step.left, '-');
        const bool isOpen = ends.right && ends.right->empty();
        const auto first = WholeNumber(ends.left, 0), last = WholeNumber(ends.right.value_or(ends.left), 0),
                   by = WholeNumber(step.right.value_or("1"), 1);
        if (!first || !by || (!isOpen && (!last || *last < *first)))
            throw WrongUse(
                "--frames " + text +
                ": expected numbers and ranges FIRST-LAST, FIRST-LASTxSTEP or FIRST-, separated by "
                "commas, such as 1-240, 1-240x2 or 1,3,5-9x2,20-");
        list.m_Parts.push_back({*first, isOpen ? std::nullopt : last, *by});
    }
    return list;
}

long FrameList::first() const {
    return std::min_element(m_Parts.begin(), m_Parts.end(),
                            [](const Part& a, const Part& b) { return a.first < b.first; })
        ->first;
}

long FrameList::last() const {
    long last = 0;
    for (const Part& part : m_Parts)
        if (part.last)
            last = std::max(last, *part.last - (*part.last - part.first) % part.step);
    return last;
}

bool FrameList::isOpen() const {
    return std::any_of(m_Parts.begin(), m_Parts.end(), [](const Part& part) { return !part.last; });
}

bool FrameList::isOnlyOpen() const {
    return m_Parts.size() == 1 && isOpen() && m_Parts[0].step == 1;
}

std::vector<long> FrameList::numbers(long end) const {
    std::vector<long> numbers;
    for (const Part& part : m_Parts)
        for (long number = part.first; number <= part.last.value_or(end); number += part.step)
            numbers.push_back(number);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

std::string NumbersText(const std::vector<long>& numbers, std::size_t maxParts) {
    std::string text;
    std::size_t parts = 0;
    for (std::size_t i = 0; i < numbers.size(); ++parts) {
        std::size_t next = i + 1;
        while (next < numbers.size() && numbers[next] == numbers[next - 1] + 1)
            ++next;
        if (parts == maxParts)
            return text + ", ...";
        text += (parts ? ", " : "") + std::to_string(numbers[i]);
        if (next - i > 1)
            text += "-" + std::to_string(numbers[next - 1]);
        i = next;
    }
    return text;
}

Shard Shard::Parse(const std::string& text) {
    const Halves halves = SplitAt(text, '/');
    const auto index = WholeNumber(halves.left, 1), count = WholeNumber(halves.right.value_or(""), 1);
    if (!index || !count || *index > *count)
        throw WrongUse("--shard " + text + ": expected K/N with K from 1 to N, such as 3/8");
    return {static_cast<std::size_t>(*index), static_cast<std::size_t>(*count)};
}

} // namespace fxhost
