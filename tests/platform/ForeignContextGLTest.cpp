#include <EGL/egl.h>

#include <thread>
#include <vector>

#include "platform/egl/ContextRegistry.h"
#include "tests/platform/ContextFixture.h"

namespace {

// A host that uses EGL on its own: an OpenGL ES context with two small surfaces.
class ForeignContextGLTest : public ContextFixture {
protected:
    static constexpr EGLint s_SurfaceSize[] = {EGL_WIDTH, 4, EGL_HEIGHT, 4, EGL_NONE};

    void SetUp() override {
        ContextFixture::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        CGLSetCurrentContext(m_First); // borrow the display that serves
        m_Display = eglGetCurrentDisplay();
        CGLSetCurrentContext(nullptr);
        const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT,
                                 EGL_NONE};
        EGLint count = 0;
        if (!eglChooseConfig(m_Display, wanted, &m_Config, 1, &count) || count == 0)
            GTEST_SKIP() << "the display has no pbuffers";
        eglBindAPI(EGL_OPENGL_ES_API);
        const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
        m_Context = eglCreateContext(m_Display, m_Config, EGL_NO_CONTEXT, version);
        m_Draw = eglCreatePbufferSurface(m_Display, m_Config, s_SurfaceSize);
        m_Read = eglCreatePbufferSurface(m_Display, m_Config, s_SurfaceSize);
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
    EGLConfig m_Config = nullptr;
    EGLContext m_Context = EGL_NO_CONTEXT;
    EGLSurface m_Draw = EGL_NO_SURFACE;
    EGLSurface m_Read = EGL_NO_SURFACE;
};

TEST_F(ForeignContextGLTest, AForeignContextIsRestoredWithItsSurfacesAndApi) {
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

TEST_F(ForeignContextGLTest, AFailureToRestoreAForeignContextReleasesTheEnginesContext) {
    const CGLContextObj host = CGLGetCurrentContext();
    ASSERT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);
    eglDestroyContext(m_Display, m_Context);
    EXPECT_EQ(CGLSetCurrentContext(host), kCGLBadContext);
    ASSERT_EQ(CGLGetCurrentContext(), nullptr) << "the thread below would wait for ever";
    std::thread([&] { EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLNoError); }).join();
}

TEST_F(ForeignContextGLTest, OnlyTheLastStatesOfForeignContextsAreStored) {
    const std::size_t before = GetContextRegistry().CountRecords();
    std::thread([&] {
        std::vector<EGLSurface> surfaces(300);
        EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
        eglBindAPI(EGL_OPENGL_ES_API);
        const EGLContext context = eglCreateContext(m_Display, m_Config, EGL_NO_CONTEXT, version);
        for (EGLSurface& surface : surfaces) {
            surface = eglCreatePbufferSurface(m_Display, m_Config, s_SurfaceSize);
            ASSERT_TRUE(eglMakeCurrent(m_Display, surface, surface, context));
            const CGLContextObj host = CGLGetCurrentContext();
            EXPECT_EQ(CGLSetCurrentContext(m_First), kCGLNoError);
            EXPECT_EQ(CGLSetCurrentContext(host), kCGLNoError);
        }
        EXPECT_LE(GetContextRegistry().CountRecords(), before + 8);
        eglMakeCurrent(m_Display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        for (const EGLSurface surface : surfaces)
            eglDestroySurface(m_Display, surface);
        eglDestroyContext(m_Display, context);
    }).join();
    EXPECT_EQ(GetContextRegistry().CountRecords(), before) << "the end of a thread frees its states";
}

TEST_F(ForeignContextGLTest, AContextThatReplacesTheEnginesIsNoticed) {
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
