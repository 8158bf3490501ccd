#include <thread>

#include "context/Context.h"
#include "platform/GL.h"
#include "tests/support/EffectTester.h"

namespace {

class LifecycleGLTest : public EffectTester {};

// How many of the first names of each kind are alive in the engine's context.
struct GlNames {
    int textures = 0, framebuffers = 0, programs = 0, shaders = 0;
    bool operator==(const GlNames&) const = default;
};

GlNames CountNames(IPlugin& engine) {
    const ContextKeeper keeper;
    EXPECT_TRUE(engine.lockFrame());
    GlNames names;
    for (GLuint name = 1; name < 200; ++name) {
        names.textures += glIsTexture(name);
        names.framebuffers += glIsFramebuffer(name);
        names.programs += glIsProgram(name);
        names.shaders += glIsShader(name);
    }
    engine.releaseFrame();
    return names;
}

constexpr char s_ManyObjects[] =
    "var a = [];\nfunction setup() { SV_initParam('l', SV_Type.LAYER); SV_initRenderTarget(4, 4, 16);\n"
    "  SV_initTexture('/absent.png'); SV_initTexture('/garbage.png'); SV_initShader('broken', 'nonsense');\n"
    "  SV_initShader('absent'); SV_initShader('fine', 'void main() { gl_FragColor = vec4(1.0); }'); }\n"
    "function draw() {}";

TEST_F(LifecycleGLTest, AResetupFreesEveryGlObjectOfTheOldScript) {
    Start({{"fx.js", s_ManyObjects}, {"garbage.png", "\x89PNG\r\n\x1a\nnothing behind it"}});
    const GlNames atFirst = CountNames(Engine());
    EXPECT_EQ(atFirst.textures, 2) << "the layer's and the target's; failed loads leave none behind";
    EXPECT_EQ(atFirst.framebuffers, 1);
    EXPECT_EQ(atFirst.programs, 3);
    for (int i = 0; i < 3; ++i) {
        Frame(TestPicture<float>(9, 9));
        const ContextKeeper keeper;
        Engine().resetup();
        m_Instance = NewInstance();
    }
    EXPECT_EQ(CountNames(Engine()), atFirst);
}

TEST_F(LifecycleGLTest, FramesReuseTheirTargetAndTexture) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("c")}});
    Frame(TestPicture<std::uint8_t>(64, 32));
    const GlNames before = CountNames(Engine());
    for (const unsigned size : {1u, 200u, 31u})
        Frame(TestPicture<float>(size, size));
    EXPECT_EQ(CountNames(Engine()), before);
}

TEST_F(LifecycleGLTest, AResetupDropsTheInstancesThatWereThere) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("c")}});
    void* const other = NewInstance();
    {
        const ContextKeeper keeper;
        Engine().resetup();
        ASSERT_TRUE(Engine().lockFrame());
        Engine().setSequenceData(other); // an index the new registry does not have
        std::uint8_t pixel[4] = {};
        Engine().grabIntoTexture(IPlugin::InputLayer, pixel, 1, 1, 8, 4);
        Engine().render(0, 1, 1, 8, 1);
        EXPECT_EQ(Engine().grabResultBegin(), nullptr) << "the host then copies its input";
        Engine().releaseFrame();
    }
    NewInstance();
    TestPicture<std::uint8_t> input(1, 1);
    input.channels = {1, 2, 3, 4};
    EXPECT_EQ(Frame(input).channels, input.channels);
    ReleaseInstance(other);
}

TEST_F(LifecycleGLTest, AReleasedEngineCanBeSetUpAgain) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("c")}});
    Engine().release();
    Engine().release();
    EXPECT_EQ(Engine().getNumParams(), 0u);
    EXPECT_EQ(CGLGetCurrentContext(), nullptr);
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("c.bgra")}});
    TestPicture<std::uint8_t> input(1, 1);
    input.channels = {1, 2, 3, 4};
    EXPECT_EQ(Frame(input).channels, (std::vector<std::uint8_t>{1, 4, 3, 2}));
}

TEST_F(LifecycleGLTest, GrabbingNothingChangesNothing) {
    Start({{"fx.js", "function setup() {}"}});
    const ContextKeeper keeper;
    ASSERT_TRUE(Engine().lockFrame());
    std::uint8_t pixel[4] = {};
    Engine().grabIntoTexture(IPlugin::InputLayer, nullptr, 1, 1, 8, 4);
    Engine().grabIntoTexture(IPlugin::InputLayer, pixel, 1, 1, 8, 0);
    Engine().setSequenceData(nullptr);
    Engine().grabIntoTexture(IPlugin::InputLayer, pixel, 1, 1, 8, 4);
    Engine().render(0, 4, 4, 8, 1);
    Engine().setSequenceData(m_Instance);
    EXPECT_EQ(Context::Current().CurrentSequence()->InputTextureHandle(), 0u);
    EXPECT_EQ(Engine().grabResultBegin(), nullptr);
    Engine().releaseFrame();
}

TEST_F(LifecycleGLTest, EightThreadsEachGetTheirOwnPicture) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("vec4(c.rgb + amount, c.a)")}});
    constexpr unsigned threads = 8, frames = 12;
    void* instances[threads];
    for (void*& instance : instances)
        instance = NewInstance();
    int wrong[threads] = {};
    std::vector<std::thread> workers;
    for (unsigned t = 0; t < threads; ++t)
        workers.emplace_back([&, t] {
            const unsigned width = 3 + t, height = 11 - t;
            std::vector<std::uint8_t> input(std::size_t{width} * height * 4,
                                            static_cast<std::uint8_t>(t * 10));
            Parameter::Value amount;
            amount.SetFloat(0, static_cast<float>(t + 1) / 255.0f);
            for (unsigned f = 0; f < frames; ++f) {
                IPlugin& engine = Engine();
                if (!engine.lockFrame()) {
                    ++wrong[t];
                    continue;
                }
                engine.setSequenceData(instances[t]);
                engine.setParam(0, amount);
                engine.grabIntoTexture(IPlugin::InputLayer, input.data(), width, height, 8, width * 4L);
                engine.render(f, width, height, 8, 1);
                void* const pixels = engine.grabResultBegin();
                const auto* const bytes = static_cast<const std::uint8_t*>(pixels);
                for (std::size_t i = 0; bytes && i < input.size(); ++i)
                    wrong[t] += bytes[i] != (i % 4 == 0 ? t * 10 : t * 10 + t + 1);
                wrong[t] += bytes == nullptr;
                engine.grabResultEnd(pixels);
                engine.releaseFrame();
                wrong[t] += CGLGetCurrentContext() != nullptr;
            }
        });
    for (std::thread& worker : workers)
        worker.join();
    for (unsigned t = 0; t < threads; ++t)
        EXPECT_EQ(wrong[t], 0) << "thread " << t;
}

} // namespace
