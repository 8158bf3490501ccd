#pragma once

#include <cstdint>
#include <vector>

#include "stricthost/FrameGeometry.h"
#include "stricthost/FrameResult.h"

namespace stricthost {

// Adds the error, flags and message that a command left to the result of its frame.
void CollectOutcome(const HostCall& call, PF_Err err, FrameResult& result);

// Fills an output before the plug-in writes it: with the pattern that finds unwritten pixels when
// Options::checkPixels is set, else with transparent black.
void PrepareOutput(const HostCore& host, const FrameState& frame, World& output);

// Copies the output into the result after a successful command, and lists its pixels that still hold the
// pattern.
void TakeOutput(const HostCore& host, const FrameState& frame, const World& output, FrameResult& result,
                std::vector<std::uint32_t>& unwritten);

} // namespace stricthost
