#include "tests/support/EffectTester.h"

#include "utils/Utils.h"

namespace {

std::wstring s_Base; // the folder of the effect under test

} // namespace

EffectTester::EffectTester() : m_Engine(std::make_unique<AEShaderVexel2>()) {
    Utils::ReadWholeTextFileCallback = nullptr;
    Utils::ReadWholeFileCallback = nullptr;
    s_Base = Utils::ToWide(m_Folder.Path()) + L"/";
    Utils::ProcessPath = [](const std::wstring& path) { return s_Base + path; };
}

EffectTester::~EffectTester() {
    while (!m_Instances.empty())
        ReleaseInstance(*m_Instances.begin());
    m_Engine.reset();
    Utils::ProcessPath = Utils::PassThrough;
}

void EffectTester::Start(std::map<std::string, std::string> files) {
    files.emplace("config.xml", "<FXNAME>Test</FXNAME>");
    for (const auto& [name, bytes] : files)
        m_Folder.Write(name, bytes);
    const ContextKeeper keeper;
    ASSERT_TRUE(m_Engine->globalSetup(nullptr, nullptr)) << "no GL: install libegl-mesa0 libgl1-mesa-dri";
    m_Instance = NewInstance();
}

void* EffectTester::NewInstance() {
    return *m_Instances.insert(m_Engine->initSequenceData()).first;
}

void EffectTester::ReleaseInstance(void* instance) {
    m_Engine->releaseSequenceData(instance);
    m_Instances.erase(instance);
}

// Pads the rows of the input, and reverses those of the result, which is bottom-up. Sets the size to that of
// the output.
std::vector<unsigned char> EffectTester::FrameBytes(const void* packed, unsigned depth, std::size_t padding,
                                                    double time, unsigned& width, unsigned& height) {
    const std::size_t used = std::size_t{width} * depth / 2, rowBytes = used + padding;
    std::vector<unsigned char> rows(rowBytes * height, 0xA5), result;
    for (unsigned y = 0; y < height; ++y)
        std::copy_n(static_cast<const unsigned char*>(packed) + y * used, used, rows.data() + y * rowBytes);
    IPlugin& engine = *m_Engine;
    engine.begin(true);
    if (!engine.lockFrame())
        return result;
    const unsigned inWidth = width, inHeight = height;
    engine.preRender(inWidth, inHeight, width, height);
    engine.grabIntoTexture(IPlugin::InputLayer, rows.data(), inWidth, inHeight, depth,
                           static_cast<std::ptrdiff_t>(rowBytes));
    engine.render(time, width, height, depth, 1.0f);
    if (void* const pixels = engine.grabResultBegin()) {
        const std::size_t outBytes = std::size_t{width} * depth / 2;
        const auto* row = static_cast<const unsigned char*>(pixels) + outBytes * height;
        for (unsigned y = 0; y < height; ++y, row -= outBytes)
            result.insert(result.end(), row - outBytes, row);
        engine.grabResultEnd(pixels);
    }
    engine.end();
    engine.releaseFrame();
    return result;
}

std::string PixelShader(const std::string& expression) {
    return R"glsl(
uniform sampler2D image;
uniform float amount;
void main() {
    vec4 c = texture2D(image, gl_TexCoord[0].xy);
    gl_FragColor = )glsl" +
           expression + " + 0.0 * amount;\n}\n";
}

std::string OneShaderScript(const std::string& extra) {
    return R"js(
var shader, amount;
function setup() {
    amount = SV_initParam('amount', SV_Type.FLOAT, 'Amount');
    shader = SV_initShader('pixel');
}
function draw() {
    SV_setShaderParam(shader, amount);
    SV_setShaderParamVal(shader, 'image', SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
)js" + extra;
}
