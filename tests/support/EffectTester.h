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
#include "tests/support/ScriptErrorLog.h"
#include "tests/support/TestPackage.h"

// Pixels in the host's order: channels alpha, red, green, blue; rows top-down.
template <class Channel>
struct TestPicture {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<Channel> channels; // rows without padding

    TestPicture(unsigned w, unsigned h) : width(w), height(h), channels(std::size_t{w} * h * 4) {}
    Channel* At(unsigned x, unsigned y) { return &channels[(std::size_t{y} * width + x) * 4]; }
};

// Restores the thread's GL context at the end, because nested frame locks leave the engine's current.
class ContextKeeper {
public:
    ContextKeeper() : m_Context(CGLGetCurrentContext()) {}
    ~ContextKeeper() { CGLSetCurrentContext(m_Context); }
    ContextKeeper(const ContextKeeper&) = delete;
    ContextKeeper& operator=(const ContextKeeper&) = delete;

private:
    CGLContextObj m_Context;
};

// Creates an engine for each test, which runs an effect whose files the test writes.
class EffectTester : public testing::Test {
protected:
    EffectTester();
    ~EffectTester() override;

    // Writes the files, adds a config.xml when there is none, and sets the engine up.
    void Start(std::map<std::string, std::string> files);

    // Renders a frame of the current instance as a host does. `padding` is added to the input's row stride,
    // in bytes.
    template <class Channel>
    TestPicture<Channel> Frame(TestPicture<Channel> input, double time = 0, std::size_t padding = 0);

    AEShaderVexel2& Engine() { return *m_Engine; }
    // Creates another instance, which becomes the current one. The end of the test releases it.
    void* NewInstance();
    void ReleaseInstance(void* instance);
    void* m_Instance = nullptr; // created by Start
    ScriptErrorLog m_Log;

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

// A shader that reads the input as `c` and writes the expression, and a script that draws it upright.
std::string PixelShader(const std::string& expression);
std::string OneShaderScript(const std::string& extra = {});
