#include <atomic>
#include <cstring>
#include <thread>

#include "context/Context.h"
#include "gpu/OpenGLContext.h"
#include "platform/GL.h"
#include "tests/support/EffectTester.h"
#include "utils/BlobReader.h"
#include "utils/BlobScrambling.h"
#include "utils/Utils.h"

namespace {

class LifecycleGLTest : public EffectTester {
protected:
    // Number of textures, framebuffers, shaders and programs in the engine's context.
    int CountObjects() {
        const ContextKeeper keeper;
        EXPECT_TRUE(Engine().lockFrame());
        int count = 0;
        for (GLuint name = 1; name < 200; ++name)
            count += glIsTexture(name) + glIsFramebuffer(name) + glIsProgram(name) + glIsShader(name);
        Engine().releaseFrame();
        return count;
    }
};

TEST_F(LifecycleGLTest, AResetupFreesEveryGLObjectOfTheOldScript) {
    Start({{"fx.js", R"js(
        function setup() {
            SV_initParam("l", SV_Type.LAYER);
            SV_initRenderTarget(4, 4, 16);
            SV_initTexture("/absent.png");
            SV_initTexture("/garbage.png");
            SV_initShader("broken", "nonsense");
            SV_initShader("absent");
            SV_initShader("fine", "void main() { gl_FragColor = vec4(1.0); }");
        })js"},
           {"garbage.png", "\x89PNG\r\n\x1a\nnothing behind it"}});
    // The texture of the layer, the texture and the framebuffer of the target, and three programs of two
    // shaders each. Images that cannot be loaded have no GL object.
    constexpr int made = 1 + 2 + 3 * 3;
    EXPECT_EQ(CountObjects(), made);
    for (const unsigned size : {9u, 1u, 200u}) { // frames of every size use the same target and texture
        Frame(TestPicture<float>(size, size));
        Frame(TestPicture<std::uint8_t>(64, 32));
        EXPECT_EQ(CountObjects(), made + 3);
        const ContextKeeper keeper;
        Engine().resetup();
        m_Instance = NewInstance();
    }
    EXPECT_EQ(CountObjects(), made);
    Engine().release();
    Engine().release();
    EXPECT_EQ(Engine().getNumParams(), 0u);
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);
}

TEST_F(LifecycleGLTest, WithoutAnInstanceThereIsNoFrame) {
    Start({{"fx.js", "function setup() {}"}});
    void* const released = NewInstance();
    ReleaseInstance(released);
    ASSERT_TRUE(Engine().lockFrame());
    std::uint8_t pixel[4] = {};
    for (void* const instance : {released, static_cast<void*>(nullptr)}) {
        Engine().setSequenceData(instance);
        Engine().grabIntoTexture(IPlugin::InputLayer, pixel, 1, 1, 8, 4);
        Engine().render(0, 1, 1, 8, 1);
        EXPECT_EQ(Engine().grabResultBegin(), nullptr) << "the host then copies its input";
    }
    Engine().setSequenceData(NewInstance());
    Engine().grabIntoTexture(IPlugin::InputLayer, nullptr, 1, 1, 8, 4);
    Engine().grabIntoTexture(IPlugin::InputLayer, pixel, 1, 1, 8, 0);
    EXPECT_EQ(Context::Current().CurrentSequence()->InputTextureHandle(), 0u)
        << "there were no pixels to upload";
    Engine().releaseFrame();
}

TEST_F(LifecycleGLTest, InstancesKeepTheirOwnValuesAcrossAResetup) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("vec4(amount / 255.0)")}});
    void* const instances[] = {m_Instance, NewInstance(), NewInstance()};
    const auto setAmount = [&](unsigned i, float number) {
        Parameter::Value amount;
        amount.SetFloat(0, number);
        Engine().setSequenceData(instances[i]);
        Engine().setParam(0, amount);
    };
    const auto channelOf = [&](unsigned i) {
        Engine().setSequenceData(instances[i]);
        return unsigned{Frame(TestPicture<std::uint8_t>(1, 1)).channels[0]};
    };
    setAmount(0, 10.0f);
    setAmount(1, 20.0f);
    Engine().resetup(); // as a button of the second instance does
    EXPECT_EQ(Engine().getParam(0).value.Float(0), 20.0f) << "the same instance is current";
    EXPECT_EQ(channelOf(0), 10u);
    EXPECT_EQ(channelOf(1), 20u);
    EXPECT_EQ(channelOf(2), 0u) << "the value that the script declares";
    ReleaseInstance(NewInstance());
    ReleaseInstance(instances[0]);
    EXPECT_EQ(channelOf(1), 20u) << "the end of another instance";
    EXPECT_EQ(m_Log.Text(), "");
}

TEST_F(LifecycleGLTest, EndedAndSavedInstancesReturnTheirGLStorage) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("c")}});
    Frame(TestPicture<float>(8, 8));
    const int before = CountObjects();
    for (int i = 0; i < 5; ++i) {
        void* const instance = NewInstance();
        Frame(TestPicture<float>(8, 8));
        EXPECT_EQ(CountObjects(), before + 3) << "a render target, its framebuffer and an input texture";
        ReleaseInstance(instance);
        EXPECT_EQ(CountObjects(), before);
    }
    for (int i = 0; i < 5; ++i) { // the host forgets the data of instances that it saved
        NewInstance();
        Frame(TestPicture<float>(8, 8));
        EXPECT_EQ(Engine().flatten(nullptr), 0);
        EXPECT_EQ(CountObjects(), before);
    }
    auto input = TestPicture<float>(2, 1);
    input.channels = {1.0f, 0.5f, 0.25f, 0.125f, 0.0f, 1.0f, 2.0f, 3.0f};
    EXPECT_EQ(Frame(input).channels, input.channels) << "a saved instance that the host goes on to use";
}

TEST_F(LifecycleGLTest, FramesThatFailLeaveNoTargetsAndTextures) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("c")}});
    constexpr unsigned tooWide = 1u << 20;
    const std::vector<std::uint8_t> row(tooWide * 4);
    const auto fail = [&] {
        const ContextKeeper keeper;
        ASSERT_TRUE(Engine().lockFrame());
        Engine().grabIntoTexture(IPlugin::InputLayer, const_cast<std::uint8_t*>(row.data()), tooWide, 1, 8,
                                 tooWide * 4L);
        Engine().render(0, tooWide, 1, 8, 1);
        EXPECT_EQ(Engine().grabResultBegin(), nullptr);
        Engine().releaseFrame();
    };
    auto input = TestPicture<std::uint8_t>(1, 1);
    input.channels = {1, 2, 3, 4};
    for (int i = 0; i < 3; ++i) { // at first without a frame to return to, then after one
        fail();
        fail();
        EXPECT_EQ(Context::Current().LiveEntities<RenderTarget>().size(), 1u);
        EXPECT_EQ(Context::Current().LiveEntities<Texture>().size(), 1u);
        EXPECT_EQ(Frame(input).channels, input.channels);
        EXPECT_EQ(CountObjects(), 3 + 3) << "program, shaders, target, framebuffer and input texture";
    }
}

TEST_F(LifecycleGLTest, AScriptReleasesItsTexturesOnlyInTheContextOfTheEngine) {
    Start({{"fx.js", R"js(
        var textures = [];
        function setup() {
            for (var i = 0; i < 8; ++i) textures.push(SV_initRenderTarget(2, 2, 8));
        }
        function release() { SV_release(textures.pop()); }
        function updateUIFlags() { release(); }
        function preRender(w, h) { release(); }
        function draw() { release(); })js"}});
    OpenGLContext host;
    ASSERT_EQ(host.init(true), OpenGLContext::NoError);
    host.makeCurrent();
    GLuint names[16] = {}; // names that the engine's context uses, too
    glGenTextures(16, names);
    const auto expectTextures = [&](const char* callback) {
        for (const GLuint name : names)
            EXPECT_TRUE(glIsTexture(name)) << callback;
    };
    for (const GLuint name : names)
        glBindTexture(GL_TEXTURE_2D, name);
    unsigned width = 0, height = 0;
    Engine().preUIUpdate();
    expectTextures("updateUIFlags");
    Engine().preRender(1, 1, width, height);
    expectTextures("preRender");
    Engine().render(0, 1, 1, 8, 1);
    expectTextures("draw");
    EXPECT_EQ(m_Log.Text(), "");
    host.releaseCurrent();
    EXPECT_EQ(host.release(), OpenGLContext::NoError);
}

TEST_F(LifecycleGLTest, ASecondSetUpOpensTheEffectOfTheSecondBundle) {
    const TemporaryFolder bundles;
    const auto bundle = [&](const std::string& name, const char* parameter) {
        const auto zip =
            ZipOf({{"config.xml", "<FXNAME>" + name + "</FXNAME>"},
                   {"fx.js", "function setup() { SV_initParam('" + std::string(parameter) + "', 1); }"}});
        const auto package = BlobScrambling::Scramble(zip);
        bundles.Write(name + "/Contents/Resources/blob.dat", {package.begin(), package.end()});
        return (bundles.Path() / name).string();
    };
    const std::string paths[] = {bundle("One", "a"), bundle("Two", "b"), bundle("Two", "b")};
    const char* const names[] = {"One", "Two", "Two"};
    Utils::ProcessPath = Utils::PassThrough;
    void* instance = nullptr;
    for (std::size_t i = 0; i < std::size(paths); ++i) {
        const ContextKeeper keeper;
        ASSERT_TRUE(Engine().globalSetup(nullptr, reinterpret_cast<const unsigned short*>(paths[i].c_str())));
        EXPECT_EQ(Engine().getString(PluginString::Name), names[i]);
        if (instance)
            EXPECT_EQ(Engine().getParam(0).name, i == 0 ? "a" : "b") << "in an instance of the first set-up";
        else
            instance = NewInstance();
        ASSERT_EQ(Engine().getNumParams(), 1u);
    }
    Engine().release();
    BlobReader::Instance().init(nullptr, nullptr); // back to loose files
}

TEST_F(LifecycleGLTest, SixteenThreadsEachGetTheFrameOfTheirInstance) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("vec4(c.rgb + amount, c.a)")}});
    std::atomic<int> wrong = 0;
    void* instances[16];
    for (void*& instance : instances) // before the threads start: only frames take the lock
        instance = NewInstance();
    std::vector<std::thread> workers;
    for (unsigned t = 0; t < 16; ++t)
        workers.emplace_back([&, t, instance = instances[t]] {
            const unsigned width = 3 + t, height = 19 - t;
            std::vector<std::uint32_t> input(width * height, 0x0A0A0A0Au * t), expected = input;
            for (std::uint32_t& pixel : expected)
                pixel += 0x01010100u * (t + 1); // alpha is the first byte, the lowest one
            Parameter::Value amount;
            amount.SetFloat(0, static_cast<float>(t + 1) / 255.0f);
            for (int frame = 0; frame < 12; ++frame) {
                wrong += !Engine().lockFrame();
                Engine().setSequenceData(instance);
                Engine().setParam(0, amount);
                Engine().grabIntoTexture(IPlugin::InputLayer, input.data(), width, height, 8, width * 4L);
                Engine().render(frame, width, height, 8, 1);
                const void* const pixels = Engine().grabResultBegin();
                wrong += !pixels || std::memcmp(pixels, expected.data(), expected.size() * 4) != 0;
                Engine().grabResultEnd(nullptr);
                Engine().releaseFrame();
                wrong += CGLGetCurrentContext() != nullptr;
            }
        });
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
