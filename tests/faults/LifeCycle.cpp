#include "tests/faults/LifeCycle.h"

#include <cstdint>
#include <exception>

#include "context/Context.h"
#include "engine/AEShaderVexel2.h"
#include "engine/FrameLock.h"
#include "platform/CGL.h"
#include "scripting/Scripting.h"
#include "tests/support/TestPackage.h"
#include "utils/Utils.h"

namespace {

constexpr unsigned s_Size = 4;
std::wstring s_Folder;
bool s_HasScriptError = false;

constexpr const char* s_Script = R"js(
var amount, layer, inner, tint, copy, dot;
function setup() {
    amount = SV_initParam('amount', SV_Type.FLOAT, 'Amount');
    layer = SV_initParam('layer', SV_Type.LAYER, 'Layer');
    inner = SV_initRenderTarget(4, 4, 8);
    copy = SV_initShader('copy', 'uniform sampler2D image;\n' +
        'void main() { gl_FragColor = texture2D(image, gl_TexCoord[0].xy); }');
    tint = SV_initShader('tint');
    dot = SV_initTexture('/dot.ppm');
}
function draw() {
    SV_setShaderParamVal(copy, 'image', SV_getSequenceTexture());
    SV_renderShader(copy, inner, false);
    var surface = SV_textureToSurface(inner);
    SV_surfaceQuantize(surface, true, 1, 1, 0, false);
    SV_surfaceCopyTo(surface, inner, false);
    SV_release(surface);
    SV_setShaderParam(tint, amount);
    SV_setShaderParamVal(tint, 'image', inner);
    SV_setShaderParamVal(tint, 'dot', dot);
    SV_renderShader(tint, SV_getSequenceRT(), true);
}
function updateUIFlags() { SV_setParamEnabled(layer, false); }
)js";

constexpr const char* s_Tint = R"glsl(
uniform sampler2D image, dot;
uniform float amount;
void main() {
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * 0.5 + texture2D(dot, vec2(0.5)) * amount;
}
)glsl";

// Failures that the engine keeps as texts.
std::string KeptErrors(AEShaderVexel2& engine) {
    std::string texts = engine.getErrorText();
    for (const Texture* const texture : Context::Current().LiveEntities<Texture>())
        texts += texture->errorText();
    for (const RenderTarget* const target : Context::Current().LiveEntities<RenderTarget>())
        texts += target->errorText();
    return texts + (s_HasScriptError ? "script error" : "");
}

void RenderFrame(AEShaderVexel2& engine, LifeCycleResult& result) {
    const FrameLock lock(engine);
    unsigned width = s_Size, height = s_Size;
    engine.preRender(s_Size, s_Size, width, height);
    std::vector<std::uint8_t> input(s_Size * s_Size * 4);
    for (std::size_t i = 0; i < input.size(); ++i)
        input[i] = static_cast<std::uint8_t>(37 * i);
    Parameter::Value amount;
    amount.SetFloat(0, 0.25f);
    engine.setParam(0, amount);
    engine.grabIntoTexture(1, input.data(), s_Size, s_Size, 8, s_Size * 4);
    engine.grabIntoTexture(IPlugin::InputLayer, input.data(), s_Size, s_Size, 8, s_Size * 4);
    engine.render(0, s_Size, s_Size, 8, 1);
    if (void* const pixels = engine.grabResultBegin()) {
        const auto* const first = static_cast<const unsigned char*>(pixels);
        std::vector<unsigned char> copy;
        try {
            copy.assign(first, first + input.size());
        } catch (...) {
            engine.grabResultEnd(pixels);
            throw;
        }
        engine.grabResultEnd(pixels);
        result.pixels = std::move(copy);
    }
}

void Run(AEShaderVexel2& engine, LifeCycleResult& result) {
    if (!engine.globalSetup(nullptr, nullptr)) {
        result.report = "no set-up";
        return;
    }
    void* const instance = engine.initSequenceData();
    engine.setSequenceData(instance);
    {
        const FrameLock lock(engine);
        engine.preUIUpdate();
    }
    RenderFrame(engine, result);
    result.report = KeptErrors(engine);
    engine.flatten(instance);
    engine.releaseSequenceData(instance);
}

} // namespace

void WriteEffect(const TemporaryFolder& folder) {
    s_Folder = Utils::ToWide(folder.Path()) + L"/";
    folder.Write("config.xml", "<FXNAME>Test</FXNAME>");
    folder.Write("fx.js", s_Script);
    folder.Write("tint.frag", s_Tint);
    folder.Write("dot.ppm", "P6 1 1 255\nabc");
    Utils::ProcessPath = [](const std::wstring& path) { return s_Folder + path; };
}

LifeCycleResult RunLifeCycle() {
    LifeCycleResult result;
    s_HasScriptError = false;
    Scripting::ErrorCallback = [](const ScriptError&) { s_HasScriptError = true; };
    try {
        AEShaderVexel2 engine;
        try {
            Run(engine, result);
        } catch (const std::exception& error) {
            result.report += error.what();
        }
    } catch (const std::exception& error) {
        result.report += error.what();
    }
    CGLSetCurrentContext(nullptr);
    if (s_HasScriptError && result.report.empty())
        result.report = "script error";
    return result;
}
