#pragma once

#include <gtest/gtest.h>
#include <vector>

#include "gpu/OpenGLContext.h"
#include "gpu/RenderTarget.h"
#include "platform/GL.h"
#include "platform/GLProblem.h"

// A fresh engine context for each test, current on the test's thread; skips where there is no OpenGL.
class GLFixture : public ::testing::Test {
protected:
    void SetUp() override {
        if (m_Context.init(true) != OpenGLContext::NoError)
            GTEST_SKIP() << PlatformGLProblem();
        m_Context.makeCurrent();
    }
    void TearDown() override {
        if (IsSkipped())
            return;
        EXPECT_EQ(m_Context.release(), OpenGLContext::NoError);
    }

    static GLint State(GLenum name) {
        GLint value = -1;
        glGetIntegerv(name, &value);
        return value;
    }

    // Textures, framebuffers, shaders and programs that exist.
    static int CountObjects() {
        int count = 0;
        for (GLuint name = 1; name < 512; ++name)
            count += glIsTexture(name) + glIsFramebuffer(name) + glIsShader(name) + glIsProgram(name);
        return count;
    }

    // All channels as GL returns them, bottom row first; not through the target's own read-back.
    static std::vector<float> ReadFloats(const RenderTarget& target) {
        std::vector<float> pixels(std::size_t(target.width()) * target.height() * 4);
        glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer());
        glReadPixels(0, 0, static_cast<GLsizei>(target.width()), static_cast<GLsizei>(target.height()),
                     GL_RGBA, GL_FLOAT, pixels.data());
        return pixels;
    }

    OpenGLContext m_Context;
};
