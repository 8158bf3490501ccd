#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace fxhost {

// One frame of a clip: its number as files are called, and its place among the frames that are asked for.
struct FrameId {
    long number = 0;
    std::size_t place = 0;
};

// "A-B", "A-BxSTEP" or "A", with 0 <= A <= B and STEP >= 1. Throws WrongUse naming --frames.
struct FrameRange {
    long first = 1;
    long last = 1;
    long step = 1;

    static FrameRange Parse(const std::string& text);
    std::string text() const;
    std::size_t size() const { return static_cast<std::size_t>((last - first) / step) + 1; }
    long at(std::size_t place) const { return first + static_cast<long>(place) * step; }
};

// "K/N", 1 <= K <= N: of the frames that are asked for, those whose place from 0 leaves the remainder K - 1
// when divided by N. Throws WrongUse naming --shard.
struct Shard {
    std::size_t index = 1;
    std::size_t count = 1;

    static Shard Parse(const std::string& text);
    bool has(std::size_t place) const { return place % count == index - 1; }
};

// Frames a second as a fraction. "24", "30000/1001", or a decimal number; the customary roundings of the
// NTSC rates (23.976, 29.97, 59.94, ...) mean their exact fractions. Throws WrongUse naming --fps.
struct FrameRate {
    long frames = 24;
    long seconds = 1;

    static FrameRate Parse(const std::string& text);
    std::string text() const;
    double perSecond() const { return static_cast<double>(frames) / static_cast<double>(seconds); }
    // Time of the frame `count` frames after time 0, in seconds.
    double timeOf(double count) const {
        return count * static_cast<double>(seconds) / static_cast<double>(frames);
    }
    bool operator==(const FrameRate&) const = default;
};

} // namespace fxhost
