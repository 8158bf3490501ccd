#include "tests/support/RecordingPlugin.h"

#include <algorithm>
#include <stdexcept>

IPlugin* GetPlugin(unsigned int) {
    RecordingPlugin& plugin = RecordingPlugin::Instance();
    if (plugin.onGet)
        plugin.onGet();
    return &plugin;
}

RecordingPlugin& RecordingPlugin::Instance() {
    static RecordingPlugin plugin;
    return plugin;
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

bool RecordingPlugin::globalSetup(void* module, const unsigned short* path) {
    Record("globalSetup", module ? "module" : "null", std::string(reinterpret_cast<const char*>(path)));
    return setupWorks;
}
Parameter& RecordingPlugin::getParamDesc(unsigned index) const {
    Record("getParamDesc");
    return index < params.size() ? const_cast<Parameter&>(params[index]) : Parameter::invalid;
}
void RecordingPlugin::setParam(unsigned index, Parameter::Value& value) {
    Record("setParam", index);
    values.resize(std::max<std::size_t>(values.size(), index + 1));
    values[index] = value;
}
void RecordingPlugin::grabIntoTexture(unsigned index, void* pixels, unsigned width, unsigned height,
                                      unsigned format, std::ptrdiff_t rowBytes) {
    Record("grabIntoTexture", static_cast<int>(index));
    Upload upload{index, width, height, format, rowBytes, {}};
    const auto* row = static_cast<const std::uint8_t*>(pixels);
    for (unsigned y = 0; y < height; ++y, row += rowBytes)
        upload.bytes.insert(upload.bytes.end(), row, row + width * format / 2);
    uploads.push_back(upload);
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
// A release counts even when it throws, so that the balance shows what the adapter did.
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
