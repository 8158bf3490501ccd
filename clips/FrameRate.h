#pragma once

#include <string>

namespace fxhost {

// Frames per second as an exact fraction.
struct FrameRate {
    long frames = 24;
    long seconds = 1;

    // Reads "24", "30000/1001" or a decimal number, up to 1000. The customary roundings of the NTSC rates
    // (23.976, 29.97, 59.94, ...) give their exact fractions. Throws WrongUse that names --fps.
    static FrameRate Parse(const std::string& text);
    // "24" or "30000/1001".
    std::string text() const;
    double perSecond() const { return static_cast<double>(frames) / static_cast<double>(seconds); }
    // Seconds from time 0 to the frame with this index.
    double timeOf(double index) const {
        return index * static_cast<double>(seconds) / static_cast<double>(frames);
    }
    bool operator==(const FrameRate&) const = default;
};

} // namespace fxhost
