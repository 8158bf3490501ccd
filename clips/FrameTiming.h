#pragma once

#include <optional>
#include <vector>

#include "clips/FrameRate.h"

// Presentation times of the frames of a video, in seconds and ascending.
namespace fxhost {

// The first of the candidates that gives every time within a quarter of a frame; nothing when the frame rate
// is variable. Containers round times, so exact equality is not expected.
std::optional<FrameRate> ConstantRate(const std::vector<double>& times,
                                      const std::vector<FrameRate>& candidates);

// A rate at which a video with a variable rate loses few frames: the first candidate up to 120 frames per
// second that is no slower than the usual distance of two frames, otherwise the rate of that distance.
FrameRate ResamplingRate(const std::vector<double>& times, const std::vector<FrameRate>& candidates);

// For each frame at a constant rate, the number (from 1) of the source frame that is shown at that time.
// Source frames move by at most half an output frame.
std::vector<long> ResampledFrames(const std::vector<double>& times, const FrameRate& rate);

} // namespace fxhost
