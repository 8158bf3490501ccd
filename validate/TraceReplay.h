#pragma once

#include <string>
#include <vector>

#include "stricthost/Options.h"

namespace validate {

struct TraceOptions {
    std::string trace;               // file that the probe wrote in a real host
    std::string probe;               // module of the probe, built for this system
    std::vector<std::string> ignore; // names of fields that are not compared, beside "thread"
    stricthost::Options
        host; // the emulated host; the personality is taken from the trace when `follow` is set
    bool follow = true;
};

// Lets the emulated host do what the real one did with the probe, in the same order, and compares what the
// probe received. Returns a sentence on the first difference, or an empty string when there is none. Throws
// fxhost::WrongUse for a trace or probe that cannot be read. Sets the environment variable FX_TRACE.
std::string FirstDifference(const TraceOptions& options);

} // namespace validate
