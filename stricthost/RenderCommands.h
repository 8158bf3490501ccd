#pragma once

#include <cstdint>
#include <vector>

#include "stricthost/FrameGeometry.h"

namespace stricthost {

class Instance;

// One frame through the plain or the smart commands. unwritten gets the numbers, row by row, of the pixels
// that still hold the fill pattern.
FrameResult RenderClassic(Instance& instance, const FrameState& frame, std::vector<std::uint32_t>& unwritten);
FrameResult RenderSmart(Instance& instance, const FrameState& frame, std::vector<std::uint32_t>& unwritten);

// Down-sampling as a number; 1 for a zero denominator.
double Factor(const PF_RationalScale& scale);
// Adds what a command left to the frame's result.
void Collect(const Call& call, PF_Err err, FrameResult& result);
// What an output holds before the plug-in is called.
void ClearOutput(World& output, const FrameState& frame, bool checkPixels);
// The output after a successful command: its picture, and its pixels that hold the pattern.
void Deliver(const World& output, const FrameState& frame, bool checkPixels, FrameResult& result,
             std::vector<std::uint32_t>& unwritten);

// An input that the plug-in may only read.
class ReadOnlyWorld {
public:
    ReadOnlyWorld(Call& call, World* world);
    ~ReadOnlyWorld(); // reports writes and retires the world
    ReadOnlyWorld(const ReadOnlyWorld&) = delete;
    ReadOnlyWorld& operator=(const ReadOnlyWorld&) = delete;
    World* Get() const { return m_World; }

private:
    Call& m_Call;
    World* m_World; // may be null
    std::uint64_t m_Checksum;
};

} // namespace stricthost
