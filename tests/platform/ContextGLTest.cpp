#include <atomic>
#include <barrier>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "tests/platform/ContextFixture.h"

namespace {

class ContextGLTest : public ContextFixture {};

// Clears a 1 x 1 framebuffer to the level and reads it back.
int DrawAndRead(int level) {
    GLuint texture = 0, framebuffer = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    glClearColor(static_cast<float>(level) / 255.0f, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    GLubyte pixel[4] = {};
    glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteTextures(1, &texture);
    return pixel[0];
}

TEST_F(ContextGLTest, SwitchesAndReportsTheCurrentContext) {
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);
    for (const CGLContextObj context : {m_First, m_Second, m_First, CGLContextObj(nullptr)}) {
        EXPECT_EQ(CGLSetCurrentContext(context), kCGLNoError);
        EXPECT_EQ(CGLGetCurrentContext(), context);
    }
}

TEST_F(ContextGLTest, EightThreadsTakeTurnsWithOneContext) {
    constexpr int threadCount = 8, rounds = 25;
    std::atomic<int> inside = 0, wrong = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number)
        threads.emplace_back([&, number] {
            for (int round = 0; round < rounds; ++round) {
                const bool current = CGLSetCurrentContext(m_First) == kCGLNoError;
                const bool alone = ++inside == 1;
                const int level = number * rounds + round;
                wrong += !current || !alone || DrawAndRead(level) != level;
                --inside;
                CGLSetCurrentContext(nullptr);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(ContextGLTest, WaitsUntilTheHolderMakesSomethingElseCurrent) {
    std::atomic<bool> letGo = false;
    std::barrier asking(2);
    CGLSetCurrentContext(m_First);
    std::thread waiter([&] {
        asking.arrive_and_wait();
        EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);
        EXPECT_TRUE(letGo);
        EXPECT_EQ(CGLGetCurrentContext(), m_First);
    });
    asking.arrive_and_wait();
    EXPECT_EQ(DrawAndRead(6), 6); // time for the waiter to ask too early
    letGo = true;
    CGLSetCurrentContext(m_Second);
    waiter.join();
    EXPECT_EQ(CGLGetCurrentContext(), m_Second);
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

TEST_F(ContextGLTest, AThreadThatEndsLetsGo) {
    for (int round = 0; round < 3; ++round)
        std::thread([&] {
            EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);
            EXPECT_EQ(DrawAndRead(7), 7);
        }).join();
    ASSERT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);
    EXPECT_EQ(DrawAndRead(8), 8);
}

TEST_F(ContextGLTest, DestroyingTurnsWaitersAway) {
    CGLSetCurrentContext(m_First);
    std::thread waiter([&] { EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLBadContext); });
    EXPECT_EQ(CGLDestroyContext(m_First), kCGLNoError);
    waiter.join();
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);
    EXPECT_EQ(CGLDestroyContext(m_First), kCGLBadContext) << "destroyed twice";
    EXPECT_EQ(CGLDestroyContext(nullptr), kCGLBadContext);
    m_First = nullptr;
}

TEST_F(ContextGLTest, AContextDestroyedElsewhereWorksUntilItsThreadLetsGo) {
    std::barrier step(2);
    std::thread holder([&] {
        EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);
        step.arrive_and_wait(); // held
        step.arrive_and_wait(); // destroyed
        EXPECT_EQ(DrawAndRead(9), 9);
        EXPECT_EQ(CGLGetCurrentContext(), nullptr) << "nothing that could be made current again";
        CGLSetCurrentContext(nullptr);
        EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLBadContext);
    });
    step.arrive_and_wait();
    EXPECT_EQ(CGLDestroyContext(m_First), kCGLNoError);
    step.arrive_and_wait();
    holder.join();
    m_First = nullptr;
}

TEST_F(ContextGLTest, CompilesTheOldDialectOfEffects) {
    CGLSetCurrentContext(m_First);
    const char* source = "uniform sampler2D s;\n"
                         "void main() { gl_FragColor = texture2DLod(s, vec2(0.5f, 1.0f), 0.0); }";
    const GLuint shader = glCreateShader(GL_FRAGMENT_SHADER);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    char log[1024] = "";
    glGetShaderInfoLog(shader, sizeof log, nullptr, log);
    EXPECT_TRUE(compiled) << log;
    glDeleteShader(shader);
}

void AskWithoutDrivers() {
    setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/nowhere.json", 1);
    const CGLPixelFormatAttribute attributes[] = {kCGLPFAAccelerated, CGLPixelFormatAttribute(0)};
    CGLPixelFormatObj format = nullptr;
    GLint count = 1;
    const CGLError error = CGLChoosePixelFormat(attributes, &format, &count);
    std::fputs(PlatformGLProblem().c_str(), stderr);
    std::_Exit(error == kCGLBadPixelFormat && !format && count == 0 ? 0 : 1);
}

TEST(NoDriverTest, TheProblemNamesThePackages) {
    // The child process starts anew, so its EGL has not looked for drivers yet.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(AskWithoutDrivers(), ::testing::ExitedWithCode(0),
                "apt install .*libegl-mesa0 libgl1-mesa-dri");
}

TEST(PixelFormatTest, UnknownAttributesAreRefused) {
    const CGLPixelFormatAttribute attributes[] = {CGLPixelFormatAttribute(99), CGLPixelFormatAttribute(0)};
    CGLPixelFormatObj format = nullptr;
    GLint count = 0;
    EXPECT_EQ(CGLChoosePixelFormat(attributes, &format, &count), kCGLBadAttribute);
    EXPECT_EQ(format, nullptr);
}

} // namespace
