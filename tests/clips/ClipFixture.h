#pragma once

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "standalone/FrameRenderer.h"
#include "standalone/clips/Clip.h"

// Turns every channel but alpha over, at depth 8: 255 - x. Has one slider, "Amount".
class NegativeRenderer final : public fxhost::FrameRenderer {
public:
    std::vector<Parameter> parameters() override;
    fxhost::Picture render(const fxhost::FrameRequest& request) override;

    std::function<void()> beforeFrame = [] {};
    std::vector<double> times;  // of the frames so far
    std::vector<float> amounts; // what the slider was
};

// A folder for a test's files, and shorthands for running clips in it.
class ClipFixture : public testing::Test {
protected:
    ClipFixture();
    ~ClipFixture() override;

    std::string at(const std::string& name) const { return (m_Folder / name).string(); }
    std::string bytes(const std::string& name) const;
    bool exists(const std::string& name) const { return std::filesystem::exists(at(name)); }
    // Names in the folder, dots first, sorted.
    std::vector<std::string> names() const;

    // Runs a clip with these file names, which are put into the folder.
    int run(fxhost::ClipOptions options, const std::string& input, const std::string& output);
    // The same in a child process that may kill itself; its wait status.
    int runInChild(const fxhost::ClipOptions& options, const std::string& input, const std::string& output);
    // Runs a program, which must succeed; what it prints.
    static std::string shell(const std::string& command);

    NegativeRenderer m_Renderer;
    std::vector<std::string> m_Settings; // --param
    fxhost::ClipRequest m_Request;       // all but input and output

private:
    const std::filesystem::path m_Folder;
};

// Every channel of every pixel different, also from frame to frame; alpha among them.
fxhost::Picture SomePicture(unsigned width, unsigned height, unsigned depth, long number);
