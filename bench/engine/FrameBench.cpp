// Times a whole frame of the engine (upload, script, draw, read-back). The baseline is a bare GL program that
// does the same upload, rectangle and read-back. Both render in turn; the ratio is the engine's time to the
// baseline's.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>

#include "bench/Pairs.h"
#include "bench/engine/BareFrame.h"
#include "engine/IPlugin.h"
#include "platform/GL.h"
#include "utils/Utils.h"

namespace {

constexpr unsigned s_Width = 1920, s_Height = 1080;

// Runs the engine on an effect that inverts its input and whose files are in memory.
class EngineFrame {
public:
    EngineFrame() {
        Utils::ReadWholeTextFileCallback = [](const std::wstring& name) -> std::string {
            if (name == L"config.xml")
                return "<FXNAME>Invert</FXNAME>";
            if (name == L"fx.js")
                return R"js(
                    var invert;
                    function setup() { invert = SV_initShader("invert"); }
                    function draw() {
                        SV_setShaderParamVal(invert, "image", SV_getSequenceTexture());
                        SV_renderShader(invert, SV_getSequenceRT(), true);
                    })js";
            return R"glsl(
                uniform sampler2D image;
                void main() {
                    vec4 c = texture2D(image, gl_TexCoord[0].xy);
                    gl_FragColor = vec4(1.0 - c.rgb, c.a);
                })glsl";
        };
        if (!m_Engine.globalSetup(nullptr, nullptr))
            std::fprintf(stderr, "no GL context: install libegl-mesa0 libgl1-mesa-dri\n"), std::exit(1);
        m_Engine.initSequenceData();
        CGLSetCurrentContext(nullptr);
    }
    ~EngineFrame() { m_Engine.release(); }
    EngineFrame(const EngineFrame&) = delete;
    EngineFrame& operator=(const EngineFrame&) = delete;

    void Render(const void* pixels, unsigned depth) {
        m_Engine.lockFrame();
        const auto stage = [&](auto work) {
            return Pairs::Time([&] {
                work();
                if (staged)
                    glFinish();
            });
        };
        last.upload = stage([&] {
            m_Engine.grabIntoTexture(IPlugin::InputLayer, const_cast<void*>(pixels), s_Width, s_Height, depth,
                                     static_cast<std::ptrdiff_t>(s_Width * depth / 2));
        });
        last.draw = stage([&] { m_Engine.render(0, s_Width, s_Height, depth, 1); });
        last.readBack = stage([&] { m_Engine.grabResultEnd(m_Engine.grabResultBegin()); });
        m_Engine.releaseFrame();
    }

    bool staged = false;
    BareFrame::Stages last;

private:
    IPlugin& m_Engine = *GetPlugin();
};

void PrintStages(unsigned depth, EngineFrame& engine, BareFrame& bare, const void* pixels) {
    engine.staged = bare.staged = true;
    std::vector<double> times[6];
    for (int i = 0; i < 15; ++i) {
        engine.Render(pixels, depth);
        bare.Render(pixels);
        const double stages[] = {engine.last.upload, bare.last.upload,     engine.last.draw,
                                 bare.last.draw,     engine.last.readBack, bare.last.readBack};
        for (int k = 0; k < 6; ++k)
            times[k].push_back(1e3 * stages[k]);
    }
    engine.staged = bare.staged = false;
    std::printf("bench/FrameBench  stages %2u bit   upload %.2f (bare %.2f)  script and draw %.2f (%.2f)  "
                "read-back %.2f (%.2f) ms\n",
                depth, Pairs::Median(times[0]), Pairs::Median(times[1]), Pairs::Median(times[2]),
                Pairs::Median(times[3]), Pairs::Median(times[4]), Pairs::Median(times[5]));
}

void Frame(benchmark::State& state) {
    const auto depth = static_cast<unsigned>(state.range(0));
    static EngineFrame engine;
    BareFrame bare(s_Width, s_Height, depth);
    std::vector<unsigned char> pixels(std::size_t{s_Width} * s_Height * depth / 2);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<unsigned char>(depth == 32 && i % 4 == 3 ? 0x3E : i % 2 ? i / 4096 % 64 : i);
    for (int i = 0; i < 3; ++i) {
        engine.Render(pixels.data(), depth);
        bare.Render(pixels.data());
    }
    Pairs pairs;
    for (auto _ : state)
        pairs.Run([&] { engine.Render(pixels.data(), depth); }, [&] { bare.Render(pixels.data()); });
    state.counters["ours_ms"] = pairs.OursMilliseconds();
    state.counters["bare_ms"] = pairs.BaselineMilliseconds();
    state.counters["ratio"] = pairs.Ratio();
    PrintStages(depth, engine, bare, pixels.data());
    std::printf("bench/FrameBench  invert 1920x1080 %2u bit  bare %.2f ms  ours %.2f ms  ratio %.3f\n", depth,
                pairs.BaselineMilliseconds(), pairs.OursMilliseconds(), pairs.Ratio());
}

} // namespace

BENCHMARK(Frame)->Arg(8)->Arg(16)->Arg(32)->Iterations(60)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
