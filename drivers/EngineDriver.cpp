#include "drivers/EngineDriver.h"

#include <cstring>
#include <exception>

#include "drivers/EffectDiagnostics.h"
#include "engine/Config.h"
#include "engine/FrameLock.h"
#include "guard/Stage.h"
#include "host/CopyOut.h"
#include "platform/CGL.h"
#include "platform/GLProblem.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

// Restores the GL context of the thread at the end of the scope, which nested frame locks do not.
class ContextRestorer {
public:
    ContextRestorer() : m_Previous(CGLGetCurrentContext()) {}
    ~ContextRestorer() { CGLSetCurrentContext(m_Previous); }
    ContextRestorer(const ContextRestorer&) = delete;
    ContextRestorer& operator=(const ContextRestorer&) = delete;

private:
    CGLContextObj m_Previous;
};

// Holds the frame lock for a scope. Throws EffectFailure when the engine refuses it.
class RequiredFrameLock {
public:
    explicit RequiredFrameLock(IPlugin& engine) : m_Lock(engine) {
        if (!m_Lock)
            throw EffectFailure("the engine's GL context cannot be made current");
    }

private:
    ContextRestorer m_Restorer;
    FrameLock m_Lock;
};

void* Writable(const Picture& picture) {
    return const_cast<std::uint8_t*>(picture.bytes.data()); // the engine only reads
}

} // namespace

EngineDriver::EngineDriver(const EffectSource& source, const EffectSource::ScriptTransform& transform)
    : m_Engine(*GetPlugin()) {
    const StageSpan span(Stage::Setup);
    source.Select(transform);
    bool ready = false;
    try {
        // The engine reads the path as narrow text when there is no bundle.
        ready = m_Engine.globalSetup(nullptr,
                                     reinterpret_cast<const unsigned short*>(source.BundlePath().c_str()));
    } catch (const ConfigError& error) {
        throw EffectFailure(source.DisplayPath("config.xml"), error.line(),
                            std::string("not well-formed XML: ") + error.what());
    }
    if (!ready)
        throw EffectFailure("no OpenGL context could be made: " + PlatformGLProblem());
    m_Sequences.push_back(m_Engine.initSequenceData());
}

EngineDriver::~EngineDriver() {
    for (void* const data : m_Sequences)
        m_Engine.releaseSequenceData(data);
    m_Engine.setSequenceData(nullptr);
    m_Engine.release();
}

std::vector<Parameter> EngineDriver::parameters() {
    m_Engine.setSequenceData(sequence());
    std::vector<Parameter> parameters;
    for (unsigned i = 0; i < m_Engine.getNumParams(); ++i)
        parameters.push_back(m_Engine.getParamDesc(i));
    return parameters;
}

EffectInfo EngineDriver::info() {
    const std::uint32_t version = m_Engine.getVersion();
    return {m_Engine.getString(PluginString::Name),
            m_Engine.getString(PluginString::About),
            m_Engine.getString(PluginString::HostId),
            version & 0x3F,
            version >> 6 & 0xFF,
            version >> 14 & 0xFFFF,
            version >> 30};
}

void EngineDriver::addInstance() {
    const FrameLock lock(m_Engine);
    m_Sequences.push_back(m_Engine.initSequenceData());
    m_Current = m_Sequences.size() - 1;
}

void EngineDriver::restart() {
    const StageSpan span(Stage::Setup);
    m_Engine.resetup();
    const FrameLock lock(m_Engine);
    for (void*& data : m_Sequences) {
        m_Engine.releaseSequenceData(data);
        data = m_Engine.initSequenceData();
    }
}

void EngineDriver::updateUI() {
    const StageSpan span(Stage::UpdateUI);
    const RequiredFrameLock lock(m_Engine);
    m_Engine.setSequenceData(sequence());
    m_Engine.preUIUpdate();
}

void EngineDriver::whileLocked(const std::function<void()>& work) {
    const RequiredFrameLock lock(m_Engine);
    m_Engine.setSequenceData(sequence());
    work();
}

std::string EngineDriver::shaderErrors() {
    return m_Engine.getErrorText();
}

void EngineDriver::setValues(const FrameInputs& request) {
    for (ParameterSetting setting : request.settings)
        m_Engine.setParam(setting.index, setting.value);
}

Picture EngineDriver::render(const FrameInputs& request) {
    const RequiredFrameLock lock(m_Engine);
    StageSpan span(Stage::PreRender, &m_OnStage);
    return draw(request, prepare(request), span);
}

Picture EngineDriver::renderAfterPreparing(const FrameInputs& request, const FrameInputs& other) {
    const RequiredFrameLock lock(m_Engine);
    StageSpan span(Stage::PreRender, &m_OnStage);
    const Extent extent = prepare(request);
    prepare(other);
    m_Engine.preUIUpdate();
    m_Engine.setCompositionSize(request.input.width, request.input.height, 1);
    setValues(request);
    return draw(request, extent, span);
}

EngineDriver::Extent EngineDriver::prepare(const FrameInputs& request) {
    const Picture& input = request.input;
    m_Engine.setSequenceData(sequence());
    m_Engine.setCompositionSize(input.width, input.height, 1);
    setValues(request);
    Extent extent{input.width, input.height};
    m_Engine.preRender(input.width, input.height, extent.width, extent.height);
    if (extent.width > MaxExtent || extent.height > MaxExtent)
        throw EffectFailure("the effect asks for an output of " + std::to_string(extent.width) + "x" +
                            std::to_string(extent.height) + " pixels; at most " + std::to_string(MaxExtent) +
                            " either way are possible");
    return extent;
}

Picture EngineDriver::draw(const FrameInputs& request, Extent extent, StageSpan& span) {
    const Picture& input = request.input;
    const auto [width, height] = extent;
    m_Engine.setInputOrigin(static_cast<int>(width / 2) - static_cast<int>(input.width / 2),
                            static_cast<int>(height / 2) - static_cast<int>(input.height / 2));
    m_Engine.begin(true);
    span.next(Stage::Upload);
    for (const LayerInput& layer : request.layers)
        m_Engine.grabIntoTexture(layer.index, Writable(layer.picture), layer.picture.width,
                                 layer.picture.height, layer.picture.depth,
                                 static_cast<std::ptrdiff_t>(layer.picture.RowBytes()));
    m_Engine.grabIntoTexture(IPlugin::InputLayer, Writable(input), input.width, input.height, input.depth,
                             static_cast<std::ptrdiff_t>(input.RowBytes()));
    span.next(Stage::Script);
    m_Engine.render(request.time, width, height, input.depth, 1);
    span.next(Stage::Draw);
    span.next(Stage::ReadBack);
    Picture picture = result(width, height, input.depth, span);
    m_Engine.end();
    span.next(Stage::Idle);
    return picture;
}

Picture EngineDriver::result(unsigned width, unsigned height, unsigned depth, StageSpan& span) {
    Picture picture(width, height, depth); // before anything is mapped: it may be too large
    void* pixels = m_Engine.grabResultBegin();
    if (!pixels)
        throw EffectFailure(FrameProblem().empty() ? "the engine has no picture of this frame"
                                                   : FrameProblem());
    span.next(Stage::CopyOut);
    const std::size_t rowBytes = picture.RowBytes();
    for (unsigned y = 0; y < height; ++y) { // the last row comes first
        const auto* from = static_cast<const std::uint8_t*>(pixels) + y * rowBytes;
        if (depth == 16)
            Adapter::ConvertRow16(reinterpret_cast<const std::byte*>(from),
                                  reinterpret_cast<std::byte*>(picture.Row(height - 1 - y)), rowBytes / 2);
        else
            std::memcpy(picture.Row(height - 1 - y), from, rowBytes);
    }
    m_Engine.grabResultEnd(pixels);
    return picture;
}

} // namespace fxhost
