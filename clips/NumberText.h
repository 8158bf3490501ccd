#pragma once

#include <optional>
#include <string_view>

// Pieces of the syntax of --frames, --shard and --fps.
namespace fxhost {

// A whole number from `minimum` to 99999999; nothing when the text is anything else.
std::optional<long> WholeNumber(std::string_view text, long minimum);

// A text cut at the first separator. Without a separator there is no right half.
struct Halves {
    std::string_view left;
    std::optional<std::string_view> right;
};
Halves SplitAt(std::string_view text, char separator);

} // namespace fxhost
