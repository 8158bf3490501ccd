#include <thread>

#include "tests/gpu/GLFixture.h"

namespace {

class OpenGLContextGLTest : public GLFixture {};

TEST_F(OpenGLContextGLTest, ReleaseCurrentRestoresTheContextThatWasCurrent) {
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

TEST_F(OpenGLContextGLTest, TheFrameLockIsRecursive) {
    EXPECT_TRUE(m_Context.lockFrame());
    EXPECT_TRUE(m_Context.lockFrame());
    m_Context.releaseFrame();
    m_Context.releaseFrame();
    std::thread([&] {
        EXPECT_TRUE(m_Context.lockFrame()) << "free again";
        m_Context.releaseFrame();
    }).join();
}

} // namespace
