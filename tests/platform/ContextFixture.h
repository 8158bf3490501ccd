#pragma once

#include <gtest/gtest.h>

#include "platform/CGL.h"
#include "platform/GLProblem.h"

// Makes contexts that are destroyed after the test; skips where there is no OpenGL.
class ContextFixture : public ::testing::Test {
protected:
    void SetUp() override {
        const CGLPixelFormatAttribute attributes[] = {kCGLPFAAccelerated, CGLPixelFormatAttribute(0)};
        GLint count = 0;
        if (CGLChoosePixelFormat(attributes, &m_Format, &count) != kCGLNoError)
            GTEST_SKIP() << PlatformGLProblem();
        m_First = MakeContext();
        m_Second = MakeContext();
        ASSERT_TRUE(m_First && m_Second);
    }

    void TearDown() override {
        CGLSetCurrentContext(nullptr);
        for (const CGLContextObj context : {m_First, m_Second})
            if (context)
                CGLDestroyContext(context);
        CGLDestroyPixelFormat(m_Format);
    }

    CGLContextObj MakeContext() {
        CGLContextObj context = nullptr;
        CGLCreateContext(m_Format, nullptr, &context);
        return context;
    }

    CGLPixelFormatObj m_Format = nullptr;
    CGLContextObj m_First = nullptr;
    CGLContextObj m_Second = nullptr;
};
