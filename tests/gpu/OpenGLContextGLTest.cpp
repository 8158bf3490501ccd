#include <atomic>
#include <thread>
#include <vector>

#include "gpu/Shader.h"
#include "tests/gpu/GLFixture.h"

namespace {

class OpenGLContextGLTest : public GLFixture {};

TEST_F(OpenGLContextGLTest, BringsBackWhatWasCurrent) {
    const CGLContextObj ours = CGLGetCurrentContext();
    OpenGLContext host;
    ASSERT_EQ(host.init(true), 0);
    EXPECT_EQ(CGLGetCurrentContext(), ours) << "init makes nothing current";
    host.makeCurrent();
    const CGLContextObj hosts = CGLGetCurrentContext();
    m_Context.makeCurrent();
    EXPECT_EQ(CGLGetCurrentContext(), ours);
    m_Context.releaseCurrent();
    EXPECT_EQ(CGLGetCurrentContext(), hosts);

    CGLSetCurrentContext(nullptr);
    m_Context.makeCurrent();
    m_Context.releaseCurrent();
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);

    m_Context.makeCurrent();
    EXPECT_EQ(host.release(), 0);
    EXPECT_EQ(CGLGetCurrentContext(), nullptr) << "whatever was current before";
    EXPECT_EQ(host.release(), OpenGLContext::DestructionFailed);
}

TEST_F(OpenGLContextGLTest, FrameLockIsRecursive) {
    EXPECT_TRUE(m_Context.lockFrame());
    EXPECT_TRUE(m_Context.lockFrame());
    m_Context.releaseFrame();
    m_Context.releaseFrame();
    std::thread([&] {
        EXPECT_TRUE(m_Context.lockFrame());
        m_Context.releaseFrame();
    }).join();
}

// Renders one level of grey and counts channels that are not that level.
int CountWrongChannels(float level) {
    RenderTarget target;
    target.init(5, 3, 32);
    Shader shader;
    shader.init("grey", "uniform float level; void main() { gl_FragColor = vec4(level); }");
    shader.getParameterInfo("level").value.SetFloat(0, level);
    target.set(nullptr);
    shader.begin();
    shader.render(false);
    shader.end();
    const auto* pixels = static_cast<const float*>(target.grabBegin());
    int wrong = 0;
    for (int i = 0; i < 5 * 3 * 4; ++i)
        wrong += pixels[i] != level;
    target.grabEnd(nullptr);
    return wrong;
}

TEST_F(OpenGLContextGLTest, EightThreadsRenderTheirOwnPictures) {
    m_Context.releaseCurrent();
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 8; ++number)
        threads.emplace_back([&, number] {
            for (int round = 0; round < 4; ++round) {
                m_Context.makeCurrent();
                const bool locked = m_Context.lockFrame();
                wrong += !locked + CountWrongChannels(static_cast<float>(number * 4 + round) / 64.0f);
                m_Context.releaseFrame();
                m_Context.releaseCurrent();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    m_Context.makeCurrent();
    glUseProgram(0); // shaders stay installed, which keeps the last one alive
    EXPECT_EQ(CountObjects(), 0);
}

} // namespace
