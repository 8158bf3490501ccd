#pragma once

#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "engine/IPlugin.h"

// A test double of the engine. It defines GetPlugin, records every call, answers from its public fields and
// throws on request. It is not thread-safe; adapters serialise their calls.
class RecordingPlugin final : public IPlugin {
public:
    struct Upload {
        unsigned index, width, height, format;
        std::ptrdiff_t rowBytes;
        std::vector<std::uint8_t> bytes; // `height` rows of `width` pixels without padding
    };
    struct Rendered {
        double time;
        unsigned width, height, format;
        float pixelAspect;
    };

    static RecordingPlugin& Instance();
    // Restores the initial state.
    void Reset() { *this = RecordingPlugin(); }

    // The calls in order: names of operations, some followed by their arguments.
    mutable std::vector<std::string> calls;
    std::vector<Upload> uploads;
    std::vector<Rendered> renders;
    std::vector<Parameter::Value> values; // from the last setParam of each index
    unsigned Count(const std::string& call) const;
    int lockBalance = 0; // successful lockFrame minus releaseFrame

    // The answers.
    std::vector<Parameter> params;
    std::uint32_t version = 0, flags = 0, flags2 = 0;
    std::string about = "About";
    unsigned outWidth = 0, outHeight = 0; // 0 for the input's size
    unsigned feedbackFrames = 0;
    bool setupWorks = true, beginWorks = true, lockWorks = true, wantsInput = true;
    std::vector<std::uint8_t> result;               // empty when there is no result
    std::function<void()> onGet, onLock, onRelease; // onGet runs in GetPlugin
    std::vector<std::uint8_t> sequenceBytes;        // flatten writes it, unflatten reads as many bytes back

    // Index in `calls` of the call that throws, or -1. It throws Thrown, or an exception that is no int.
    int throwAtCall = -1;
    bool throwsInt = true;
    static constexpr int Thrown = 4711;

    bool globalSetup(void* module, const unsigned short* path) override;
    bool resetup() override { return Answer("resetup", true); }
    void release() override { Record("release"); }
    void* initSequenceData() override {
        return Answer("initSequenceData", reinterpret_cast<void*>(++m_LastSequence));
    }
    void releaseSequenceData(void* data) override { Record("releaseSequenceData", Number(data)); }
    void setSequenceData(void* data) override { Record("setSequenceData", Number(data)); }
    bool begin(bool) override { return Answer("begin", beginWorks); }
    void preRender(unsigned width, unsigned height, unsigned& outW, unsigned& outH) override {
        Record("preRender", width, height);
        outW = outWidth ? outWidth : width;
        outH = outHeight ? outHeight : height;
    }
    void render(double time, unsigned width, unsigned height, unsigned format, float pixelAspect) override {
        Record("render");
        renders.push_back({time, width, height, format, pixelAspect});
    }
    void end() override { Record("end"); }
    void preUIUpdate() override { Record("preUIUpdate"); }
    unsigned getNumParams() const override { return Answer("getNumParams", unsigned(params.size())); }
    Parameter& getParamDesc(unsigned index) const override;
    Parameter& getParam(unsigned index) const override { return getParamDesc(index); }
    void setParam(unsigned index, Parameter::Value& value) override;
    void grabIntoTexture(unsigned index, void* pixels, unsigned width, unsigned height, unsigned format,
                         std::ptrdiff_t rowBytes) override;
    void* grabResultBegin() override {
        return Answer("grabResultBegin", result.empty() ? nullptr : result.data());
    }
    void grabResultEnd(void* pixels) override {
        Record(pixels == result.data() ? "grabResultEnd" : "grabResultEnd with other pixels");
    }
    std::uint32_t getVersion() override { return Answer("getVersion", version); }
    std::uint32_t getFlags() override { return Answer("getFlags", flags); }
    std::uint32_t getFlags2() override { return Answer("getFlags2", flags2); }
    std::uint32_t getPrivNum() override { return Answer("getPrivNum", 0u); }
    std::string getString(PluginString which) override {
        return Answer("getString", which == PluginString::About    ? about
                                   : which == PluginString::HostId ? "HOSTID"
                                                                   : "Name");
    }
    unsigned getNumFeedbackFrames() override { return Answer("getNumFeedbackFrames", feedbackFrames); }
    std::string getErrorText() override { return Answer("getErrorText", std::string()); }
    bool isInputRequested() override { return Answer("isInputRequested", wantsInput); }
    bool lockFrame() override;
    void releaseFrame() override;
    int flatten(void* buffer) override;
    void unflatten(void* buffer) override;
    void showOptions(void*) override { Record("showOptions"); }
    void setCompositionSize(unsigned w, unsigned h, float s) override {
        Record("setCompositionSize", w, h, s);
    }
    void setInputOrigin(int x, int y) override { Record("setInputOrigin", x, y); }

private:
    void Record(const std::string& call) const;
    template <class... Parts>
    void Record(const char* call, const Parts&... parts) const {
        std::ostringstream text;
        text << call;
        ((text << ' ' << parts), ...);
        Record(text.str());
    }
    template <class Value>
    Value Answer(const char* call, const Value& value) const {
        Record(call);
        return value;
    }
    static std::uintptr_t Number(const void* data) { return reinterpret_cast<std::uintptr_t>(data); }
    std::uintptr_t m_LastSequence = 0;
};
