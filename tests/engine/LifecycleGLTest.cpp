#include <atomic>
#include <cstring>
#include <thread>

#include "context/Context.h"
#include "platform/GL.h"
#include "tests/support/EffectTester.h"

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

TEST_F(LifecycleGLTest, InstancesWithoutASequenceReturnNoFrame) {
    Start({{"fx.js", "function setup() {}"}});
    void* const dropped = NewInstance(); // its index does not exist in the new registry
    const ContextKeeper keeper;
    Engine().resetup();
    ASSERT_TRUE(Engine().lockFrame());
    std::uint8_t pixel[4] = {};
    for (void* const instance : {dropped, static_cast<void*>(nullptr)}) {
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

TEST_F(LifecycleGLTest, EightThreadsEachGetTheFrameOfTheirInstance) {
    Start({{"fx.js", OneShaderScript()}, {"pixel.frag", PixelShader("vec4(c.rgb + amount, c.a)")}});
    std::atomic<int> wrong = 0;
    void* instances[8];
    for (void*& instance : instances) // before the threads start: only frames take the lock
        instance = NewInstance();
    std::vector<std::thread> workers;
    for (unsigned t = 0; t < 8; ++t)
        workers.emplace_back([&, t, instance = instances[t]] {
            const unsigned width = 3 + t, height = 11 - t;
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
