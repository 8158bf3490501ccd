#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <thread>

#include "engine/IPlugin.h"
#include "engine/SmallBlockPool.h"

class Config;
class OpenGLContext;
class Sequence;

// The implementation of IPlugin. It owns the configuration and the GL context, runs the script, and forwards
// everything else to the registry. IPlugin.h describes the operations.
class AEShaderVexel2 final : public IPlugin {
public:
    AEShaderVexel2();
    ~AEShaderVexel2();

    bool globalSetup(void* module, const unsigned short* path) override;
    bool resetup() override;
    void release() override;
    void* initSequenceData() override;
    void releaseSequenceData(void* data) override;
    void setSequenceData(void* data) override;
    bool begin(bool) override;
    void preRender(unsigned width, unsigned height, unsigned& outWidth, unsigned& outHeight) override;
    void render(double time, unsigned width, unsigned height, unsigned format, float pixelAspect) override;
    void end() override;
    void preUIUpdate() override;
    unsigned getNumParams() const override;
    Parameter& getParamDesc(unsigned index) const override;
    Parameter& getParam(unsigned index) const override;
    void setParam(unsigned index, Parameter::Value& value) override;
    void grabIntoTexture(unsigned index, void* pixels, unsigned width, unsigned height, unsigned format,
                         std::ptrdiff_t rowBytes) override;
    void* grabResultBegin() override;
    void grabResultEnd(void* pixels) override;
    std::uint32_t getVersion() override;
    std::uint32_t getFlags() override;
    std::uint32_t getFlags2() override;
    std::uint32_t getPrivNum() override;
    std::string getString(PluginString which) override;
    unsigned getNumFeedbackFrames() override;
    std::string getErrorText() override;
    bool isInputRequested() override;
    bool lockFrame() override;
    void releaseFrame() override;
    int flatten(void* buffer) override;
    void unflatten(void* buffer) override;
    void showOptions(void*) override;
    void setCompositionSize(unsigned width, unsigned height, float scale) override;
    void setInputOrigin(int x, int y) override;

private:
    struct SequenceData;
    class LockScope;

    static void suspend(SequenceData& record);
    static void resume(SequenceData& record);
    void destroy(SequenceData* record);
    Sequence* selectSequence() const;
    void runCallback(const char* call);
    void restartScript(const std::string& script);
    static void showErrors(Sequence* sequence, const std::string& errors);
    std::uint32_t configNumber(const wchar_t* key) const;

    SequenceData* m_SequenceData = nullptr; // of the current instance
    // All sequence data that the host holds. Hosts forget some when they save or copy an instance; the engine
    // frees those at its end.
    SmallBlockPool m_Pool;
    using RecordAllocator = PoolAllocator<std::pair<void* const, SequenceData*>>;
    std::map<void*, SequenceData*, std::less<>, RecordAllocator> m_Records{RecordAllocator(m_Pool)};
    std::unique_ptr<Config> m_Config;
    std::unique_ptr<OpenGLContext> m_GlContext;
    // The thread that holds the frame lock, and how often. Only that thread changes the two.
    std::atomic<std::thread::id> m_LockOwner;
    unsigned m_LockDepth = 0;
    bool m_HasContext = false; // from the creation of the GL context to its release
    bool m_Initialised = false;
    bool m_ScriptLoaded = false;
    unsigned m_FramesSinceFlip = 0;
};
