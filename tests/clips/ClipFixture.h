#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "clips/Clip.h"
#include "tests/support/TestFiles.h"
#include "toolkit/FrameRenderer.h"

// Turns every channel but alpha over, at depth 8: 255 - x. Has one slider, "Amount".
class NegativeRenderer final : public fxhost::FrameRenderer {
public:
    std::vector<Parameter> parameters() override;
    fxhost::Picture render(const fxhost::FrameInputs& request) override;

    std::function<void()> beforeFrame = [] {};
    std::vector<double> times;  // of the frames so far
    std::vector<float> amounts; // what the slider was
};

// Shorthands for running clips in the test's folder.
class ClipFixture : public FolderTest {
protected:
    // Runs a clip with these file names, which are put into the folder.
    int run(fxhost::ClipOptions options, const std::string& input, const std::string& output);
    // The same in a child process that may kill itself; its wait status.
    int runInChild(const fxhost::ClipOptions& options, const std::string& input, const std::string& output);
    // Runs a program, which must succeed; what it prints.
    static std::string shell(const std::string& command);

    NegativeRenderer m_Renderer;
    std::vector<std::string> m_Settings; // --param
    fxhost::ClipRequest m_Request;       // all but input and output
};
