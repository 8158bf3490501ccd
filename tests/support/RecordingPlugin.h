#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/IPlugin.h"

// Stands in for the engine: defines GetPlugin, writes down every call, answers from its public fields and
// throws where it is told to. Not thread-safe; adapters serialise their calls.
class RecordingPlugin final : public IPlugin {
public:
    struct Upload {
        unsigned index, width, height, format;
        long rowBytes;
        std::vector<std::uint8_t> bytes; // height rows of width pixels, padding removed
    };
    struct Rendered {
        double time;
        unsigned width, height, format;
        float pixelAspect;
    };

    static RecordingPlugin& Instance();
    // Forgets everything, as if just made.
    void Reset();

    // What happened, as operation names, some followed by their arguments.
    mutable std::vector<std::string> calls;
    std::vector<Upload> uploads;
    std::vector<Rendered> renders;
    std::vector<Parameter::Value> values; // last setParam by index
    unsigned Count(const std::string& call) const;
    int lockBalance = 0; // successful lockFrame minus releaseFrame

    // What is answered.
    std::vector<Parameter> params;
    std::uint32_t version = 0, flags = 0, flags2 = 0;
    std::string about = "About", hostId = "HOSTID";
    unsigned outWidth = 0, outHeight = 0; // 0: the input's
    unsigned feedbackFrames = 0;
    bool setupWorks = true, beginWorks = true, lockWorks = true, wantsInput = true;
    std::vector<std::uint8_t> result; // empty: no result
    std::function<void()> onLock, onRelease;
    std::vector<std::uint8_t> sequenceBytes; // flatten writes it, unflatten reads as many bytes back

    // The call with this number, counted from 0 over everything, throws: an int, or something else.
    int throwAtCall = -1;
    bool throwsInt = true;
    static constexpr int Thrown = 4711;

    bool globalSetup(void* module, const unsigned short* path) override;
    bool resetup() override;
    void release() override;
    void* initSequenceData() override;
    void releaseSequenceData(void* data) override;
    void setSequenceData(void* data) override;
    bool begin(bool) override;
    void preRender(unsigned width, unsigned height, unsigned& outW, unsigned& outH) override;
    void render(double time, unsigned width, unsigned height, unsigned format, float pixelAspect) override;
    void end() override;
    void preUIUpdate() override;
    unsigned getNumParams() const override;
    Parameter& getParamDesc(unsigned index) const override;
    Parameter& getParam(unsigned index) const override;
    void setParam(unsigned index, Parameter::Value& value) override;
    void grabIntoTexture(unsigned index, void* pixels, unsigned width, unsigned height, unsigned format,
                         long rowBytes) override;
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
    void Record(const std::string& call) const;
    std::uintptr_t m_LastSequence = 0;
};
