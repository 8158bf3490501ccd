#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fxhost {

// One frame of a clip.
struct FrameId {
    long number = 0;          // in file names
    std::size_t place = 0;    // index among the frames that are asked for
    std::uint64_t digest = 0; // of everything that the frame depends on
};

// The frames that --frames asks for: "FIRST-LAST", "FIRST-LASTxSTEP" or "NUMBER".
struct FrameRange {
    long first = 1; // at least 0
    long last = 1;  // at least first
    long step = 1;  // at least 1

    // Throws WrongUse that names --frames.
    static FrameRange Parse(const std::string& text);
    std::string text() const;
    std::size_t size() const { return static_cast<std::size_t>((last - first) / step) + 1; }
    long at(std::size_t place) const { return first + static_cast<long>(place) * step; }
};

// One machine's share of a clip, "K/N": every Nth of the frames that are asked for, starting with the Kth.
struct Shard {
    std::size_t index = 1; // K, from 1 to count
    std::size_t count = 1; // N

    // Throws WrongUse that names --shard.
    static Shard Parse(const std::string& text);
    bool has(std::size_t place) const { return place % count == index - 1; }
};

} // namespace fxhost
