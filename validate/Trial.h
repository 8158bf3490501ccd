#pragma once

#include <string>

#include "validate/TestRun.h"

namespace validate {

// One host with the plug-in, from global set-up to the end. At the end every violation of the host's rules
// becomes a finding of the test. Thread-safe like StrictHost.
class Trial {
public:
    // where: how the situation is described in findings, such as "with 1x1 pixels". Throws
    // std::runtime_error, with that text, when a set-up command fails.
    Trial(TestRun& run, const stricthost::Options& options, std::string where = {});
    ~Trial();
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;

    stricthost::StrictHost& Host() { return *m_Host; }
    // A new instance on a layer of this size in pixels, as the host first shows it.
    stricthost::Instance& Apply(unsigned width, unsigned height);
    // Renders; an error becomes a finding, except for an interruption that was requested.
    fxhost::Picture Render(stricthost::Instance& instance, const stricthost::FrameSpec& spec);
    // A finding when two pictures differ. what: continues "the picture differs ...".
    void ExpectSame(const fxhost::Picture& got, const fxhost::Picture& expected, const std::string& what);
    // Adds a finding that says where it was found.
    void Fail(const std::string& text);

private:
    TestRun& m_Run;
    std::string m_Where;
    bool m_MayInterrupt;
    std::unique_ptr<stricthost::StrictHost> m_Host;
};

// A frame of the input at a time in 1/25 seconds.
stricthost::FrameSpec FrameOf(const fxhost::Picture& input, A_long time = 0);

} // namespace validate
