#pragma once

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "gpu/OpenGLContext.h"
#include "gpu/RenderTarget.h"
#include "gpu/Shader.h"
#include "platform/GL.h"
#include "platform/GLProblem.h"
#include "utils/Utils.h"

// Each test has a new engine context, which is current on the test's thread. Skips tests where there is no
// OpenGL.
class GLFixture : public ::testing::Test {
protected:
    void SetUp() override {
        if (m_Context.init(true) != OpenGLContext::NoError)
            GTEST_SKIP() << PlatformGLProblem();
        m_Context.makeCurrent();
    }
    void TearDown() override {
        Utils::ReadWholeTextFileCallback = nullptr;
        Utils::ReadWholeFileCallback = nullptr;
        Shader::s_ResourceDirectory = nullptr;
        Shader::reverseFlip = false;
        if (!IsSkipped()) {
            EXPECT_EQ(m_Context.release(), OpenGLContext::NoError);
        }
    }

    static GLint State(GLenum name) {
        GLint value = -1;
        glGetIntegerv(name, &value);
        return value;
    }

    // Returns the number of textures, framebuffers, shaders and programs that exist.
    static int CountObjects() {
        int count = 0;
        for (GLuint name = 1; name < 512; ++name)
            count += glIsTexture(name) + glIsFramebuffer(name) + glIsShader(name) + glIsProgram(name);
        return count;
    }

    // Returns what OpenGL stores, bottom row first and not swizzled, without the read-back of the engine.
    static std::vector<float> Stored(const Texture& texture) {
        std::vector<float> pixels(std::size_t(texture.width()) * texture.height() * 4);
        glBindTexture(GL_TEXTURE_2D, texture.id());
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, pixels.data());
        return pixels;
    }

    // Returns what the shader draws into a target of this size: alpha, red, green, blue.
    static std::vector<float> Drawn(Shader& shader, unsigned width, unsigned height, bool flip = false) {
        RenderTarget target;
        target.init(width, height, 32);
        target.set(nullptr);
        EXPECT_TRUE(shader.begin()) << shader.errorText();
        shader.render(flip);
        shader.end();
        return Stored(target);
    }

    static void SetTexture(Shader& shader, const std::string& name, const Texture& texture) {
        shader.getParameterInfo(name).value.SetInt(0, static_cast<std::int32_t>(texture.id()));
    }

    OpenGLContext m_Context;
};

// Bytes that differ from their neighbours, and that make finite numbers when they are read as floats.
inline std::vector<unsigned char> CountedBytes(std::size_t count, unsigned first = 0) {
    std::vector<unsigned char> bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<unsigned char>((first + i * 7) % 113);
    return bytes;
}
