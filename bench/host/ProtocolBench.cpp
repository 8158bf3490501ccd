// Cost of the command protocol: the time that a frame spends inside the plug-in's entry point, compared with
// the same frame through the engine's interface with the rows copied out. Frames of the two sides alternate,
// and the ratio is protocol to engine.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <memory>

#include "bench/Pairs.h"
#include "engine/IPlugin.h"
#include "host/CopyOut.h"
#include "host/EntryPoint.h"
#include "platform/CGL.h"
#include "stricthost/StrictHost.h"
#include "utils/Utils.h"

namespace {

constexpr unsigned s_Width = 1920, s_Height = 1080;
double s_InsidePlugin = 0; // seconds in the entry point since it was last set to 0

PF_Err TimedEntry(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamList params, PF_LayerDef* output,
                  void* extra) {
    PF_Err error = PF_Err_NONE;
    s_InsidePlugin += Pairs::Time([&] { error = EntryPointFunc(command, in, out, params, output, extra); });
    return error;
}

// An effect with ten parameters that inverts its input, served from memory.
void ServeEffect() {
    Utils::ReadWholeTextFileCallback = [](const std::wstring& name) -> std::string {
        if (name == L"config.xml")
            return "<FXNAME>Invert</FXNAME><MAJOR_VERSION>1</MAJOR_VERSION><FLAGS>33554432</"
                   "FLAGS><FLAGS2>5120</FLAGS2>";
        if (name == L"fx.js")
            return "var invert, all = [];\nfunction setup() {\n"
                   "  for (var i = 0; i < 10; ++i) all.push(SV_initParam('p' + i, SV_Type.FLOAT, 'P' + i));\n"
                   "  invert = SV_initShader('invert'); }\n"
                   "function draw() { SV_setShaderParamVal(invert, 'image', SV_getSequenceTexture());\n"
                   "  SV_renderShader(invert, SV_getSequenceRT(), true); }";
        return "uniform sampler2D image;\nvoid main() { vec4 c = texture2D(image, gl_TexCoord[0].xy);\n"
               "  gl_FragColor = vec4(1.0 - c.rgb, c.a); }";
    };
}

// The same frame without a host: the least that any caller of the engine must do.
class EngineAlone {
public:
    EngineAlone() : m_Engine(*GetPlugin()), m_Sequence(m_Engine.initSequenceData()) {}
    ~EngineAlone() { m_Engine.releaseSequenceData(m_Sequence); }
    EngineAlone(const EngineAlone&) = delete;
    EngineAlone& operator=(const EngineAlone&) = delete;

    // output: memory for the tightly packed picture.
    void Render(fxhost::Picture& input, std::uint8_t* output) {
        const unsigned depth = input.depth;
        const std::size_t rowBytes = input.RowBytes();
        m_Engine.lockFrame();
        m_Engine.setSequenceData(m_Sequence);
        unsigned width = 0, height = 0;
        m_Engine.preRender(s_Width, s_Height, width, height);
        m_Engine.grabIntoTexture(IPlugin::InputLayer, input.bytes.data(), s_Width, s_Height, depth,
                                 static_cast<std::ptrdiff_t>(input.RowBytes()));
        m_Engine.render(0, width, height, depth, 1);
        void* const pixels = m_Engine.grabResultBegin();
        for (unsigned y = 0; y < height; ++y)
            CopyRow(static_cast<const std::uint8_t*>(pixels) + y * rowBytes,
                    output + (height - 1 - y) * rowBytes, rowBytes, depth);
        m_Engine.grabResultEnd(pixels);
        m_Engine.end();
        m_Engine.releaseFrame();
    }

private:
    static void CopyRow(const std::uint8_t* from, std::uint8_t* to, std::size_t bytes, unsigned depth) {
        if (depth != 16) {
            std::memcpy(to, from, bytes);
            return;
        }
        Adapter::ConvertRow16(reinterpret_cast<const std::byte*>(from), reinterpret_cast<std::byte*>(to),
                              bytes / 2);
    }

    IPlugin& m_Engine;
    void* m_Sequence;
};

void Protocol(benchmark::State& state) {
    const auto depth = static_cast<unsigned>(state.range(0));
    ServeEffect();
    stricthost::Options options;
    // The host's own work must not be measured, so it makes no checks, and it renders without smart render,
    // where it creates its worlds before it calls the plug-in.
    options.checkPixels = false;
    options.personality = stricthost::Personality::AfterEffectsPlain;
    options.currentContext = []() -> void* { return CGLGetCurrentContext(); };
    stricthost::StrictHost host(TimedEntry, options);
    host.GlobalSetup();
    host.ParamsSetup();
    stricthost::Instance& instance = host.NewInstance(s_Width, s_Height);
    instance.UpdateUI();
    {
        EngineAlone alone;
        fxhost::Picture input(s_Width, s_Height, depth);
        const auto memory = [&] {
            return std::unique_ptr<std::uint8_t[]>(new std::uint8_t[input.bytes.size()]);
        };
        stricthost::FrameSpec request;
        request.input = &input;
        std::vector<double> ratios, protocol, engine;
        for (int warm = 0; warm < 3; ++warm) {
            instance.Render(request);
            alone.Render(input, memory().get());
        }
        for (auto _ : state) {
            s_InsidePlugin = 0;
            instance.Render(request);
            protocol.push_back(1e3 * s_InsidePlugin);
            const auto output = memory(); // as fresh as the host's
            engine.push_back(1e3 * Pairs::Time([&] { alone.Render(input, output.get()); }));
            CGLSetCurrentContext(nullptr);
            ratios.push_back(protocol.back() / engine.back());
        }
        state.counters["ratio"] = Pairs::Median(ratios);
        std::printf(
            "bench/ProtocolBench  invert 1920x1080 %2u bit  engine %.2f ms  protocol %.2f ms  ratio %.3f\n",
            depth, Pairs::Median(engine), Pairs::Median(protocol), Pairs::Median(ratios));
    }
    host.Finish();
    for (const std::string& text : host.Violations())
        std::printf("host: %s\n", text.c_str());
    GetPlugin()->release();
}

} // namespace

BENCHMARK(Protocol)->Arg(8)->Arg(16)->Arg(32)->Iterations(60)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
