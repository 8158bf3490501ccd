#include "engine/AEShaderVexel2.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#include <utility>

#include "context/Context.h"
#include "engine/Config.h"
#include "gpu/DrawText.h"
#include "gpu/GLErrors.h"
#include "gpu/OpenGLContext.h"
#include "platform/GL.h"
#include "scripting/PitchScript.h"
#include "scripting/Scripting.h"
#include "utils/BlobReader.h"
#include "utils/Utils.h"

// The sequence data, which the host keeps for an instance.
struct AEShaderVexel2::SequenceData {
    static constexpr std::uint32_t NoSequence = 0xFFFFFFFFu;
    std::uint32_t index = NoSequence; // of the instance's sequence in the registry
    using State = Sequence::ParameterState;
    std::vector<State, PoolAllocator<State>> state; // while the instance has no sequence

    explicit SequenceData(SmallBlockPool& pool) : state(PoolAllocator<State>(pool)) {}
};

// Holds the frame lock for a scope. Does not take it again when the thread holds it already, because nested
// locks do not restore the GL context.
class AEShaderVexel2::LockScope {
public:
    explicit LockScope(AEShaderVexel2& engine)
        : m_Engine(engine), m_WasHeld(engine.m_LockOwner == std::this_thread::get_id()),
          m_IsHeld(m_WasHeld || engine.lockFrame()) {}
    ~LockScope() {
        if (m_IsHeld && !m_WasHeld)
            m_Engine.releaseFrame();
    }
    LockScope(const LockScope&) = delete;
    LockScope& operator=(const LockScope&) = delete;

    // False when there is no GL context, or when it cannot be made current.
    explicit operator bool() const { return m_IsHeld; }

private:
    AEShaderVexel2& m_Engine;
    bool m_WasHeld;
    bool m_IsHeld;
};

namespace {

constexpr unsigned s_RendersPerFlip = 4;

// Converts the sign and the leading digits of a text, modulo 2^32; 0 when there are none.
std::uint32_t ToNumber(const std::string& text) {
    return static_cast<std::uint32_t>(std::strtoll(text.c_str(), nullptr, 10));
}

} // namespace

IPlugin* GetPlugin(unsigned int) {
    static AEShaderVexel2 plugin;
    return &plugin;
}

// Creates the registry and the package reader first, so that they are destroyed after the engine, whose
// destructor uses them.
AEShaderVexel2::AEShaderVexel2() {
    Context::Current();
    BlobReader::Instance();
}

AEShaderVexel2::~AEShaderVexel2() {
    release();
    for (const auto& [data, record] : m_Records)
        destroy(record);
    m_Config.reset();
    m_GlContext.reset();
    Scripting::DestroyInstance();
}

bool AEShaderVexel2::globalSetup(void* module, const unsigned short* path) {
    release(); // when the object was set up before
    BlobReader::Instance().init(module, const_cast<unsigned short*>(path));
    m_Config = std::make_unique<Config>(module);
    m_GlContext = std::make_unique<OpenGLContext>();
    if (m_GlContext->init(true) != 0)
        return false;
    m_HasContext = true;
    const LockScope lock(*this);
    resetup();
    m_Initialised = true;
    return true;
}

bool AEShaderVexel2::resetup() {
    const std::string script = PitchScript(Utils::ReadWholeTextFile(L"fx.js"));
    const LockScope lock(*this);
    for (const auto& [data, record] : m_Records)
        suspend(*record);
    restartScript(script);
    setSequenceData(m_SequenceData);
    return true;
}

// Frees all memory of an instance but the values that differ from those of the script.
void AEShaderVexel2::suspend(SequenceData& record) {
    Context& context = Context::Current();
    if (const Sequence* const sequence = context.FindSequence(record.index)) {
        const auto state = sequence->OwnState();
        record.state.assign(state.begin(), state.end());
    }
    context.ReleaseSequence(record.index);
    record.index = SequenceData::NoSequence;
}

void AEShaderVexel2::resume(SequenceData& record) {
    Context& context = Context::Current();
    if (context.FindSequence(record.index))
        return;
    record.index = context.CreateSequence();
    context.FindSequence(record.index)->Adopt(record.state);
    record.state.clear();
}

void AEShaderVexel2::restartScript(const std::string& script) {
    Scripting& scripting = Scripting::Instance();
    scripting.Release();
    scripting.Init();
    scripting.Execute(script.c_str());
    m_ScriptLoaded = true;
    if (Sequence* const sequence = Context::Current().CurrentSequence())
        sequence->Init();
}

void AEShaderVexel2::release() {
    if (!m_Initialised)
        return;
    // The GL objects of the script must be deleted while their context is current. No context is current
    // after the context's release.
    if (m_GlContext)
        m_GlContext->makeCurrent();
    for (const auto& [data, record] : m_Records)
        suspend(*record);
    Scripting::Instance().Release();
    if (m_GlContext)
        m_GlContext->release();
    m_HasContext = false;
    m_Initialised = false;
}

void AEShaderVexel2::destroy(SequenceData* record) {
    std::destroy_at(record);
    m_Pool.deallocate(record, sizeof *record);
}

void* AEShaderVexel2::initSequenceData() {
    const LockScope lock(*this);
    m_SequenceData = new (m_Pool.allocate(sizeof(SequenceData))) SequenceData(m_Pool);
    m_Records.emplace(m_SequenceData, m_SequenceData);
    resume(*m_SequenceData);
    return m_SequenceData;
}

// Ignores data that the engine did not create or has destroyed.
void AEShaderVexel2::releaseSequenceData(void* data) {
    const LockScope lock(*this);
    const auto found = m_Records.find(data);
    if (found == m_Records.end())
        return;
    Context::Current().ReleaseSequence(found->second->index);
    if (m_SequenceData == data)
        m_SequenceData = nullptr;
    destroy(found->second);
    m_Records.erase(found);
}

void AEShaderVexel2::setSequenceData(void* data) {
    const auto found = m_Records.find(data);
    m_SequenceData = found != m_Records.end() ? found->second : nullptr;
    selectSequence();
}

// Makes the current instance's sequence the registry's current one. Null when there is no instance.
Sequence* AEShaderVexel2::selectSequence() const {
    if (!m_SequenceData)
        return nullptr;
    resume(*m_SequenceData);
    Context::Current().SetCurrentSequence(m_SequenceData->index);
    return Context::Current().CurrentSequence();
}

bool AEShaderVexel2::begin(bool) {
    return true;
}

void AEShaderVexel2::runCallback(const char* call) {
    if (m_ScriptLoaded)
        Scripting::Instance().Execute(call);
}

void AEShaderVexel2::preRender(unsigned width, unsigned height, unsigned& outWidth, unsigned& outHeight) {
    const LockScope lock(*this); // some hosts call this without the lock
    if (!m_SequenceData)
        return;
    Sequence* const sequence = selectSequence();
    if (sequence)
        sequence->SetOutputExtent(0, 0);
    if (lock) {
        char call[64];
        std::snprintf(call, sizeof call, "preRender(%d,%d,%d);", static_cast<int>(width),
                      static_cast<int>(height), 1);
        runCallback(call);
    }
    outWidth = sequence && sequence->OutputWidth() != 0 ? sequence->OutputWidth() : width;
    outHeight = sequence && sequence->OutputHeight() != 0 ? sequence->OutputHeight() : height;
}

void AEShaderVexel2::render(double time, unsigned width, unsigned height, unsigned format, float) {
    const LockScope lock(*this);
    if (!m_SequenceData || !lock)
        return;
    Sequence* const sequence = selectSequence();
    if (sequence) {
        Sequence::Surface surface;
        surface.width = width;
        surface.height = height;
        surface.format = format;
        sequence->Reset(surface, time);
    }
    const std::string errors = Context::Current().GetErrors(Context::ErrorLines::Author);
    if (!errors.empty())
        showErrors(sequence, errors);
    else
        runCallback("draw();");
    if (sequence)
        sequence->RestoreTarget();
    if (++m_FramesSinceFlip > s_RendersPerFlip) {
        m_GlContext->flip();
        m_FramesSinceFlip = 0;
    }
}

// Draws the texts into the frame, which the host shows, as the engine has no window.
void AEShaderVexel2::showErrors(Sequence* sequence, const std::string& errors) {
    Utils::Log("%s", errors.c_str());
    const bool hasFrame = sequence && sequence->GetRenderTarget().usable();
    RenderTarget& screen = hasFrame ? sequence->GetRenderTarget() : RenderTarget::screen;
    screen.set(nullptr);
    if (!hasFrame)
        return;                           // the default framebuffer of an offscreen context has no pixels
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f); // the content of a resized target is undefined
    glClear(GL_COLOR_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0.0, screen.width(), 0.0, screen.height(), -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glUseProgram(0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    GLErrors::Check("AEShaderVexel2::showErrors");
    Utils::DrawText(4, 0, static_cast<int>(screen.height() >> 4), errors);
}

void AEShaderVexel2::end() {}

void AEShaderVexel2::preUIUpdate() {
    const LockScope lock(*this); // hosts call this without the lock
    if (!m_SequenceData || !lock)
        return;
    selectSequence();
    runCallback("updateUIFlags();");
}

unsigned AEShaderVexel2::getNumParams() const {
    return Context::Current().GetNumParams();
}

Parameter& AEShaderVexel2::getParamDesc(unsigned index) const {
    Context& context = Context::Current();
    return context.GetResource<Parameter>(context.GetParamByIdx(index).handle);
}

Parameter& AEShaderVexel2::getParam(unsigned index) const {
    return getParamDesc(index);
}

void AEShaderVexel2::setParam(unsigned index, Parameter::Value& value) {
    if (!m_SequenceData)
        return;
    selectSequence();
    Parameter& parameter = getParamDesc(index);
    if (parameter.handle != 0 && parameter.type != Parameter::LAYER)
        parameter.value = value;
}

void AEShaderVexel2::grabIntoTexture(unsigned index, void* pixels, unsigned width, unsigned height,
                                     unsigned format, std::ptrdiff_t rowBytes) {
    const LockScope lock(*this);
    if (!pixels || rowBytes == 0 || !m_SequenceData || !lock)
        return;
    Sequence* const sequence = selectSequence();
    if (index == InputLayer) {
        if (!sequence)
            return;
        Sequence::Surface surface;
        surface.width = width;
        surface.height = height;
        surface.rowBytes = rowBytes;
        surface.format = format;
        surface.pixels = pixels;
        sequence->ResetInputTexture(surface);
        return;
    }
    Parameter& parameter = getParamDesc(index);
    Texture& texture = Context::Current().GetResource<Texture>(parameter.texture);
    if (texture.id() == 0)
        return;
    texture.grabPixels(pixels, width, height, format, rowBytes, true, true);
    parameter.value.SetInt(0, static_cast<std::int32_t>(texture.id()));
}

void* AEShaderVexel2::grabResultBegin() {
    Sequence* const sequence = selectSequence();
    if (!sequence || !sequence->HasFrame())
        return nullptr;
    return const_cast<void*>(sequence->GetRenderTarget().grabBegin());
}

void AEShaderVexel2::grabResultEnd(void* pixels) {
    if (Sequence* const sequence = selectSequence())
        sequence->GetRenderTarget().grabEnd(pixels);
}

std::uint32_t AEShaderVexel2::getVersion() {
    const std::uint32_t major = ToNumber(m_Config ? m_Config->GetString(L"MAJOR_VERSION") : "");
    const std::uint32_t minor = ToNumber(m_Config ? m_Config->GetString(L"MINOR_VERSION") : "");
    const std::uint32_t build = ToNumber(m_Config ? m_Config->GetString(L"BUILD_VERSION") : "");
    const std::uint32_t stage = ToNumber(m_Config ? m_Config->GetString(L"STAGE_VERSION") : "");
    return (major & 0x3F) | (minor & 0xFF) << 6 | (build & 0xFFFF) << 14 | stage << 30;
}

std::uint32_t AEShaderVexel2::configNumber(const wchar_t* key) const {
    return ToNumber(m_Config ? m_Config->GetString(key) : "");
}

std::uint32_t AEShaderVexel2::getFlags() {
    return configNumber(L"FLAGS");
}

std::uint32_t AEShaderVexel2::getFlags2() {
    return configNumber(L"FLAGS2");
}

std::uint32_t AEShaderVexel2::getPrivNum() {
    return configNumber(L"PRIVNUM");
}

std::string AEShaderVexel2::getString(PluginString which) {
    static constexpr const wchar_t* s_Keys[] = {L"ABOUT", L"FXNAME", L"AGEP_ID"};
    const auto index = static_cast<std::size_t>(which);
    return m_Config && index < std::size(s_Keys) ? m_Config->GetString(s_Keys[index]) : std::string();
}

unsigned AEShaderVexel2::getNumFeedbackFrames() {
    return 0;
}

std::string AEShaderVexel2::getErrorText() {
    return Context::Current().GetErrors();
}

bool AEShaderVexel2::isInputRequested() {
    return true;
}

bool AEShaderVexel2::lockFrame() {
    if (!m_HasContext || m_GlContext->makeCurrent() != 0 || !m_GlContext->lockFrame())
        return false;
    m_LockOwner = std::this_thread::get_id();
    ++m_LockDepth;
    return true;
}

void AEShaderVexel2::releaseFrame() {
    if (!m_GlContext || m_LockOwner != std::this_thread::get_id())
        return;
    if (--m_LockDepth == 0)
        m_LockOwner = std::thread::id();
    m_GlContext->releaseFrame();
    m_GlContext->releaseCurrent();
}

// The host saves the instance and may never use it again.
int AEShaderVexel2::flatten(void*) {
    const LockScope lock(*this);
    if (m_SequenceData && lock)
        suspend(*m_SequenceData);
    return 0;
}

void AEShaderVexel2::unflatten(void*) {}

void AEShaderVexel2::showOptions(void*) {}

void AEShaderVexel2::setCompositionSize(unsigned width, unsigned height, float scale) {
    // A scale out of range becomes 1 rather than the nearest bound. NaN is stored unchanged.
    if (scale < 0.01f)
        scale = 1.0f;
    if (scale > 4.0f)
        scale = 1.0f;
    Context::Current().SetCompositionSize(width, height, scale);
}

void AEShaderVexel2::setInputOrigin(int x, int y) {
    if (!m_SequenceData)
        return;
    if (Sequence* const sequence = selectSequence())
        sequence->SetInputOrigin(x, y);
}
