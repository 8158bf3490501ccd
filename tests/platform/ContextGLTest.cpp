#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "tests/platform/ContextFixture.h"

namespace {

class ContextGLTest : public ContextFixture {};

constexpr std::chrono::milliseconds s_TimeToAsk{50}; // until other threads are waiting

// Returns whether GL calls reach a context: a number is written into a buffer and read back.
bool GLWorks() {
    GLuint buffer = 0, sent = 0xDECADE, received = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof sent, &sent, GL_STATIC_READ);
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof received, &received);
    glDeleteBuffers(1, &buffer);
    return received == sent;
}

TEST_F(ContextGLTest, AThreadWaitsUntilTheHolderMakesAnotherContextCurrent) {
    std::atomic<bool> letGo = false;
    CGLSetCurrentContext(m_First);
    std::thread waiter([&] {
        EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);
        EXPECT_TRUE(letGo);
        EXPECT_TRUE(GLWorks());
    });
    std::this_thread::sleep_for(s_TimeToAsk); // a faulty waiter would get the context now
    letGo = true;
    CGLSetCurrentContext(m_Second);
    waiter.join();
    EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLNoError) << "a thread that ends lets go";
    EXPECT_TRUE(GLWorks());
}

TEST_F(ContextGLTest, TwoThreadsSwapTheirContexts) {
    std::barrier bothHold(2);
    const auto swap = [&](CGLContextObj mine, CGLContextObj other) {
        EXPECT_EQ(CGLSetCurrentContext(mine), kCGLNoError);
        bothHold.arrive_and_wait();
        EXPECT_EQ(CGLSetCurrentContext(other), kCGLNoError);
        EXPECT_EQ(CGLGetCurrentContext(), other);
        CGLSetCurrentContext(nullptr);
    };
    std::thread thread(swap, m_Second, m_First);
    swap(m_First, m_Second);
    thread.join();
}

TEST_F(ContextGLTest, DestroyingTheCurrentContextReleasesIt) {
    CGLSetCurrentContext(m_First);
    EXPECT_EQ(CGLDestroyContext(m_First), kCGLNoError);
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);
    EXPECT_FALSE(GLWorks());
    EXPECT_EQ(CGLDestroyContext(m_First), kCGLBadContext) << "destroyed twice";
    EXPECT_EQ(CGLDestroyContext(nullptr), kCGLBadContext);
}

TEST_F(ContextGLTest, AContextDestroyedByAnotherThreadWorksUntilItIsReleasedAndRefusesWaiters) {
    CGLSetCurrentContext(m_First);
    std::thread waiter([&] { EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLBadContext); });
    std::this_thread::sleep_for(s_TimeToAsk);
    std::thread([&] { EXPECT_EQ(CGLDestroyContext(m_First), kCGLNoError); }).join();
    waiter.join();
    EXPECT_TRUE(GLWorks());
    EXPECT_EQ(CGLGetCurrentContext(), nullptr) << "nothing that could be made current again";
    EXPECT_EQ(CGLSetCurrentContext(nullptr), kCGLNoError);
    EXPECT_FALSE(GLWorks());
    EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLBadContext);
}

void AskWithoutDrivers() {
    setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/nowhere.json", 1);
    CGLPixelFormatObj format = nullptr;
    GLint count = 1;
    const CGLError error = ChooseFormat(kCGLPFAAccelerated, format, count);
    std::fputs(PlatformGLProblem().c_str(), stderr);
    std::_Exit(error == kCGLBadPixelFormat && !format && count == 0 ? 0 : 1);
}

TEST(PixelFormatTest, UnknownAttributesAndMissingDriversAreRefused) {
    CGLPixelFormatObj format = nullptr;
    GLint count = 0;
    EXPECT_EQ(ChooseFormat(99, format, count), kCGLBadAttribute);
    // A new child process, whose EGL has not looked for drivers yet.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(AskWithoutDrivers(), ::testing::ExitedWithCode(0),
                "apt install .*libegl-mesa0 libgl1-mesa-dri");
}

} // namespace
