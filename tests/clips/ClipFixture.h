#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "clips/Clip.h"
#include "tests/support/TestFiles.h"
#include "toolkit/FrameRenderer.h"

// Inverts every channel except alpha at depth 8 (255 - x); copies other depths. Has one slider, "Amount".
class NegativeRenderer final : public fxhost::FrameRenderer {
public:
    std::vector<Parameter> parameters() override;
    fxhost::Picture render(const fxhost::FrameInputs& request) override;

    std::function<void()> beforeFrame = [] {};
    std::vector<double> times;  // of the frames rendered so far
    std::vector<float> amounts; // values of the slider in these frames
};

// Runs clips in the folder of the test.
class ClipFixture : public FolderTest {
protected:
    // Runs a clip with files of the folder, and returns the exit status.
    int run(fxhost::ClipOptions options, const std::string& input, const std::string& output);
    // The same in a child process that may kill itself; returns its wait status.
    int runInChild(const fxhost::ClipOptions& options, const std::string& input, const std::string& output);
    // Runs a shell command, which must succeed, and returns its standard output.
    static std::string shell(const std::string& command);

    NegativeRenderer m_Renderer;
    std::function<bool()> m_HasFailed = [] { return false; }; // called after each frame
    std::vector<std::string> m_Settings;                      // --param
    fxhost::ClipRequest m_Request;                            // all but input and output
};
