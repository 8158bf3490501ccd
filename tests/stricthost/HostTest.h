#pragma once

#include <cstring>
#include <gmock/gmock.h>
#include <numeric>

#include "stricthost/StrictHost.h"
#include "tests/stricthost/StandIn.h"

using stricthost::FrameResult;
using stricthost::Instance;
using stricthost::Personality;
using Numbers = std::vector<double>;

// A picture whose bytes differ from their neighbours in both directions.
fxhost::Picture Gradient(unsigned width, unsigned height, unsigned depth = 8);
// The picture that the stand-in renders from another one.
fxhost::Picture Inverted(fxhost::Picture picture);

// A host for the stand-in, with plain render unless a test says otherwise, and a frame to ask for.
class HostTest : public testing::Test {
protected:
    HostTest();
    void StartHost();         // a new one, set up to the parameters, with an empty log
    Instance& Start();        // the same, and an instance
    void Finish();            // the host, without violations
    FrameResult RenderOnce(); // one frame of a new instance, from start to finish

    StandIn m_Plugin;
    stricthost::Options m_Options;
    fxhost::Picture m_Input = Gradient(40, 10);
    stricthost::FrameSpec m_Request; // for the input
    std::unique_ptr<stricthost::StrictHost> m_Host;
};
