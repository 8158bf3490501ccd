#pragma once

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "engine/AEShaderVexel2.h"
#include "platform/CGL.h"
#include "tests/support/TestPackage.h"

// Pixels as a host holds them: alpha, red, green, blue, first row on top, rows `rowBytes` apart.
template <class Channel>
struct TestPicture {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<Channel> channels; // tightly packed

    TestPicture(unsigned w, unsigned h) : width(w), height(h), channels(std::size_t{w} * h * 4) {}
    Channel* At(unsigned x, unsigned y) { return &channels[(std::size_t{y} * width + x) * 4]; }
};

// Gives the thread's GL context back at the end: nested frame locks leave the engine's current.
class ContextKeeper {
public:
    ContextKeeper() : m_Context(CGLGetCurrentContext()) {}
    ~ContextKeeper() { CGLSetCurrentContext(m_Context); }
    ContextKeeper(const ContextKeeper&) = delete;
    ContextKeeper& operator=(const ContextKeeper&) = delete;

private:
    CGLContextObj m_Context;
};

// An engine of its own for each test, run on a loose effect that the test writes down.
class EffectTester : public testing::Test {
protected:
    EffectTester();
    ~EffectTester() override;

    // Writes the files (config.xml is added when missing) and sets the engine up.
    void Start(std::map<std::string, std::string> files);

    // A frame of the current instance, through the whole road. The input has rowBytes = packed + padding.
    template <class Channel>
    TestPicture<Channel> Frame(TestPicture<Channel> input, double time = 0, std::size_t padding = 0);

    AEShaderVexel2& Engine() { return *m_Engine; }
    // One more instance, which becomes the current one; given back with the test unless it was before.
    void* NewInstance();
    void ReleaseInstance(void* instance);
    void* m_Instance = nullptr; // of Start

private:
    std::vector<unsigned char> FrameBytes(const void* packed, unsigned depth, std::size_t padding,
                                          double time, unsigned& width, unsigned& height);

    TemporaryFolder m_Folder;
    std::unique_ptr<AEShaderVexel2> m_Engine;
    std::set<void*> m_Instances;
};

template <class Channel>
TestPicture<Channel> EffectTester::Frame(TestPicture<Channel> input, double time, std::size_t padding) {
    unsigned width = input.width, height = input.height;
    const auto bytes = FrameBytes(input.channels.data(), sizeof(Channel) * 8, padding, time, width, height);
    TestPicture<Channel> output(width, height);
    if (bytes.empty() || bytes.size() != output.channels.size() * sizeof(Channel))
        ADD_FAILURE() << "the engine returned no frame";
    else
        std::memcpy(output.channels.data(), bytes.data(), bytes.size());
    return output;
}

// A shader that reads the input as `c` and writes the expression; a script that runs it upright.
std::string PixelShader(const std::string& expression);
std::string OneShaderScript(const std::string& extra = {});
