#include "clips/FrameList.h"

#include "clips/NumberText.h"
#include "toolkit/Errors.h"

namespace fxhost {

FrameRange FrameRange::Parse(const std::string& text) {
    const Halves step = SplitAt(text, 'x'), ends = SplitAt(step.left, '-');
    const auto first = WholeNumber(ends.left, 0), last = WholeNumber(ends.right.value_or(ends.left), 0),
               by = WholeNumber(step.right.value_or("1"), 1);
    if (!first || !last || !by || *last < *first)
        throw WrongUse("--frames " + text +
                       ": expected FIRST-LAST, FIRST-LASTxSTEP or one number, such as 1-240 or 1-240x2");
    return {*first, *last, *by};
}

std::string FrameRange::text() const {
    std::string range = std::to_string(first);
    if (last != first)
        range += "-" + std::to_string(last);
    return step == 1 ? range : range + "x" + std::to_string(step);
}

Shard Shard::Parse(const std::string& text) {
    const Halves halves = SplitAt(text, '/');
    const auto index = WholeNumber(halves.left, 1), count = WholeNumber(halves.right.value_or(""), 1);
    if (!index || !count || *index > *count)
        throw WrongUse("--shard " + text + ": expected K/N with K from 1 to N, such as 3/8");
    return {static_cast<std::size_t>(*index), static_cast<std::size_t>(*count)};
}

} // namespace fxhost
