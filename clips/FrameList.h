#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace fxhost {

// One frame of a clip.
struct FrameId {
    long number = 0;          // in file names
    std::size_t place = 0;    // index among the frames that are asked for
    std::uint64_t digest = 0; // of everything that the frame depends on
};

// The frames that --frames asks for: parts such as "7", "5-9", "5-9x2" and "5-", separated by commas. A part
// without a last number reaches to the end of the input.
class FrameList {
public:
    // Throws WrongUse that names --frames.
    static FrameList Parse(const std::string& text);

    // The smallest number that is asked for.
    long first() const;
    // The largest number of the parts that have an end; 0 when each part is open.
    long last() const;
    bool isOpen() const; // true when a part has no end
    // True when the list is one part "N-" without a step.
    bool isOnlyOpen() const;
    // The numbers in ascending order, each one once. `end`: the last number of the open parts.
    std::vector<long> numbers(long end) const;

private:
    struct Part {
        long first = 1;
        std::optional<long> last; // nothing for an open part
        long step = 1;
    };
    std::vector<Part> m_Parts; // at least one
};

// Numbers in ascending order as text: "1-5, 7, 9-20". After `maxParts` parts the text ends with "...".
std::string NumbersText(const std::vector<long>& numbers, std::size_t maxParts = 8);

// One machine's share of a clip, "K/N": every Nth of the frames that are asked for, starting with the Kth.
struct Shard {
    std::size_t index = 1; // K, from 1 to count
    std::size_t count = 1; // N

    // Throws WrongUse that names --shard.
    static Shard Parse(const std::string& text);
    bool has(std::size_t place) const { return place % count == index - 1; }
};

} // namespace fxhost
