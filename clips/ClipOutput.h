#pragma once

#include <memory>

#include "clips/ClipInput.h"
#include "clips/FrameSink.h"

namespace fxhost {

// The path that discards every frame.
constexpr const char* DiscardPath = "/dev/null";

// Opens numbered pictures, a video, raw frames on standard output, or DiscardPath. Throws WrongUse that names
// the file or option.
std::unique_ptr<FrameSink> OpenClipOutput(const ClipOptions& options, const ClipRequest& request,
                                          const ClipInput& input);

} // namespace fxhost
