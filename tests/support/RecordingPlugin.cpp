#include "tests/support/RecordingPlugin.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>

IPlugin* GetPlugin(unsigned int) {
    return &RecordingPlugin::Instance();
}

RecordingPlugin& RecordingPlugin::Instance() {
    static RecordingPlugin s_Plugin;
    return s_Plugin;
}

void RecordingPlugin::Reset() {
    *this = RecordingPlugin();
}

unsigned RecordingPlugin::Count(const std::string& call) const {
    return static_cast<unsigned>(std::count(calls.begin(), calls.end(), call));
}

void RecordingPlugin::Record(const std::string& call) const {
    calls.push_back(call);
    if (static_cast<int>(calls.size()) - 1 != throwAtCall)
        return;
    if (throwsInt)
        throw static_cast<int>(Thrown);
    throw std::runtime_error("from the engine");
}

namespace {
template <class... Parts>
std::string Text(const Parts&... parts) {
    std::ostringstream text;
    ((text << parts << ' '), ...);
    std::string result = text.str();
    result.pop_back();
    return result;
}
} // namespace

bool RecordingPlugin::globalSetup(void* module, const unsigned short* path) {
    Record(Text("globalSetup", module ? "module" : "null", std::string(reinterpret_cast<const char*>(path))));
    return setupWorks;
}
bool RecordingPlugin::resetup() {
    Record("resetup");
    return true;
}
void RecordingPlugin::release() {
    Record("release");
}
void* RecordingPlugin::initSequenceData() {
    Record("initSequenceData");
    return reinterpret_cast<void*>(++m_LastSequence);
}
void RecordingPlugin::releaseSequenceData(void* data) {
    Record(Text("releaseSequenceData", reinterpret_cast<std::uintptr_t>(data)));
}
void RecordingPlugin::setSequenceData(void* data) {
    Record(Text("setSequenceData", reinterpret_cast<std::uintptr_t>(data)));
}
bool RecordingPlugin::begin(bool) {
    Record("begin");
    return beginWorks;
}
void RecordingPlugin::preRender(unsigned width, unsigned height, unsigned& outW, unsigned& outH) {
    Record(Text("preRender", width, height));
    outW = outWidth ? outWidth : width;
    outH = outHeight ? outHeight : height;
}
void RecordingPlugin::render(double time, unsigned width, unsigned height, unsigned format,
                             float pixelAspect) {
    Record("render");
    renders.push_back({time, width, height, format, pixelAspect});
}
void RecordingPlugin::end() {
    Record("end");
}
void RecordingPlugin::preUIUpdate() {
    Record("preUIUpdate");
}
unsigned RecordingPlugin::getNumParams() const {
    Record("getNumParams");
    return static_cast<unsigned>(params.size());
}
Parameter& RecordingPlugin::getParamDesc(unsigned index) const {
    Record("getParamDesc");
    return index < params.size() ? const_cast<Parameter&>(params[index]) : Parameter::invalid;
}
Parameter& RecordingPlugin::getParam(unsigned index) const {
    return getParamDesc(index);
}
void RecordingPlugin::setParam(unsigned index, Parameter::Value& value) {
    Record(Text("setParam", index));
    values.resize(std::max<std::size_t>(values.size(), index + 1));
    values[index] = value;
}
void RecordingPlugin::grabIntoTexture(unsigned index, void* pixels, unsigned width, unsigned height,
                                      unsigned format, long rowBytes) {
    Record(Text("grabIntoTexture", static_cast<int>(index)));
    Upload upload{index, width, height, format, rowBytes, {}};
    const auto* row = static_cast<const std::uint8_t*>(pixels);
    for (unsigned y = 0; y < height; ++y, row += rowBytes)
        upload.bytes.insert(upload.bytes.end(), row, row + width * format / 2);
    uploads.push_back(upload);
}
void* RecordingPlugin::grabResultBegin() {
    Record("grabResultBegin");
    return result.empty() ? nullptr : result.data();
}
void RecordingPlugin::grabResultEnd(void* pixels) {
    Record(pixels == result.data() ? "grabResultEnd" : "grabResultEnd with other pixels");
}
std::uint32_t RecordingPlugin::getVersion() {
    Record("getVersion");
    return version;
}
std::uint32_t RecordingPlugin::getFlags() {
    Record("getFlags");
    return flags;
}
std::uint32_t RecordingPlugin::getFlags2() {
    Record("getFlags2");
    return flags2;
}
std::uint32_t RecordingPlugin::getPrivNum() {
    Record("getPrivNum");
    return 0;
}
std::string RecordingPlugin::getString(PluginString which) {
    Record("getString");
    return which == PluginString::About ? about : which == PluginString::HostId ? hostId : "Name";
}
unsigned RecordingPlugin::getNumFeedbackFrames() {
    Record("getNumFeedbackFrames");
    return feedbackFrames;
}
std::string RecordingPlugin::getErrorText() {
    Record("getErrorText");
    return {};
}
bool RecordingPlugin::isInputRequested() {
    Record("isInputRequested");
    return wantsInput;
}
bool RecordingPlugin::lockFrame() {
    Record("lockFrame");
    if (!lockWorks)
        return false;
    ++lockBalance;
    if (onLock)
        onLock();
    return true;
}
// A release that throws has released all the same, so that the balance says what the adapter did.
void RecordingPlugin::releaseFrame() {
    --lockBalance;
    if (onRelease)
        onRelease();
    Record("releaseFrame");
}
int RecordingPlugin::flatten(void* buffer) {
    Record("flatten");
    std::copy(sequenceBytes.begin(), sequenceBytes.end(), static_cast<std::uint8_t*>(buffer));
    return 0;
}
void RecordingPlugin::unflatten(void* buffer) {
    Record("unflatten");
    const auto* bytes = static_cast<const std::uint8_t*>(buffer);
    sequenceBytes.assign(bytes, bytes + sequenceBytes.size());
}
void RecordingPlugin::showOptions(void*) {
    Record("showOptions");
}
void RecordingPlugin::setCompositionSize(unsigned width, unsigned height, float scale) {
    Record(Text("setCompositionSize", width, height, scale));
}
void RecordingPlugin::setInputOrigin(int x, int y) {
    Record(Text("setInputOrigin", x, y));
}
