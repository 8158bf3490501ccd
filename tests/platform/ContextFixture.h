#pragma once

#include <gtest/gtest.h>

#include "platform/CGL.h"
#include "platform/GLProblem.h"

inline CGLError ChooseFormat(int attribute, CGLPixelFormatObj& format, GLint& count) {
    const CGLPixelFormatAttribute attributes[] = {CGLPixelFormatAttribute(attribute),
                                                  CGLPixelFormatAttribute(0)};
    return CGLChoosePixelFormat(attributes, &format, &count);
}

// Two contexts that are destroyed after the test; skips where there is no OpenGL.
class ContextFixture : public ::testing::Test {
protected:
    void SetUp() override {
        GLint count = 0;
        if (ChooseFormat(kCGLPFAAccelerated, m_Format, count) != kCGLNoError)
            GTEST_SKIP() << PlatformGLProblem();
        ASSERT_EQ(CGLCreateContext(m_Format, nullptr, &m_First), kCGLNoError);
        ASSERT_EQ(CGLCreateContext(m_Format, nullptr, &m_Second), kCGLNoError);
    }

    void TearDown() override {
        CGLSetCurrentContext(nullptr);
        for (const CGLContextObj context : {m_First, m_Second})
            CGLDestroyContext(context);
        CGLDestroyPixelFormat(m_Format);
    }

    CGLPixelFormatObj m_Format = nullptr;
    CGLContextObj m_First = nullptr;
    CGLContextObj m_Second = nullptr;
};
