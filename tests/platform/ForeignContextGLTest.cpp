#include <EGL/egl.h>

#include "tests/platform/ContextFixture.h"

namespace {

// A host that uses EGL on its own: an OpenGL ES context with two small surfaces.
class ForeignContextGLTest : public ContextFixture {
protected:
    void SetUp() override {
        ContextFixture::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        CGLSetCurrentContext(m_First); // borrow the display that serves
        m_Display = eglGetCurrentDisplay();
        CGLSetCurrentContext(nullptr);
        const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT,
                                 EGL_NONE};
        EGLConfig config = nullptr;
        EGLint count = 0;
        if (!eglChooseConfig(m_Display, wanted, &config, 1, &count) || count == 0)
            GTEST_SKIP() << "the display has no pbuffers";
        eglBindAPI(EGL_OPENGL_ES_API);
        const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
        m_Context = eglCreateContext(m_Display, config, EGL_NO_CONTEXT, version);
        const EGLint size[] = {EGL_WIDTH, 4, EGL_HEIGHT, 4, EGL_NONE};
        m_Draw = eglCreatePbufferSurface(m_Display, config, size);
        m_Read = eglCreatePbufferSurface(m_Display, config, size);
        ASSERT_TRUE(HostMakesCurrent(m_Draw));
    }

    void TearDown() override {
        eglMakeCurrent(m_Display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroySurface(m_Display, m_Draw);
        eglDestroySurface(m_Display, m_Read);
        eglDestroyContext(m_Display, m_Context);
        ContextFixture::TearDown();
    }

    bool HostMakesCurrent(EGLSurface draw) const {
        return eglMakeCurrent(m_Display, draw, m_Read, m_Context) == EGL_TRUE;
    }

    EGLDisplay m_Display = EGL_NO_DISPLAY;
    EGLContext m_Context = EGL_NO_CONTEXT;
    EGLSurface m_Draw = EGL_NO_SURFACE;
    EGLSurface m_Read = EGL_NO_SURFACE;
};

TEST_F(ForeignContextGLTest, IsBroughtBackWithSurfacesAndApi) {
    const CGLContextObj host = CGLGetCurrentContext();
    ASSERT_TRUE(HostMakesCurrent(m_Read));
    EXPECT_NE(CGLGetCurrentContext(), host) << "other surfaces are another state";

    ASSERT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);
    EXPECT_EQ(CGLGetCurrentContext(), m_First);
    eglBindAPI(EGL_OPENGL_API);

    ASSERT_EQ(CGLSetCurrentContext(host), kCGLNoError);
    EXPECT_EQ(eglGetCurrentContext(), m_Context);
    EXPECT_EQ(eglGetCurrentSurface(EGL_DRAW), m_Draw);
    EXPECT_EQ(eglGetCurrentSurface(EGL_READ), m_Read);
    EXPECT_EQ(eglQueryAPI(), EGLenum(EGL_OPENGL_ES_API));
    EXPECT_EQ(CGLGetCurrentContext(), host) << "the same state has one name";
    EXPECT_EQ(CGLDestroyContext(host), kCGLBadContext) << "it belongs to the host";

    CGLContextObj another = nullptr;
    EXPECT_EQ(CGLCreateContext(m_Format, nullptr, &another), kCGLNoError);
    EXPECT_EQ(eglQueryAPI(), EGLenum(EGL_OPENGL_ES_API)) << "making a context leaves the bound API";
    EXPECT_EQ(CGLDestroyContext(another), kCGLNoError);
}

TEST_F(ForeignContextGLTest, DisplacesOursWithoutBeingNoticed) {
    const CGLContextObj host = CGLGetCurrentContext();
    ASSERT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);

    // The host may also save and bring back ours.
    const EGLContext ours = eglGetCurrentContext();
    ASSERT_TRUE(HostMakesCurrent(m_Draw));
    EXPECT_EQ(CGLGetCurrentContext(), host);
    ASSERT_TRUE(eglMakeCurrent(m_Display, EGL_NO_SURFACE, EGL_NO_SURFACE, ours));
    EXPECT_EQ(CGLGetCurrentContext(), m_First);
}

} // namespace
