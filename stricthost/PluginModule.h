#pragma once

#include <filesystem>

#include "sdk/HostApi.h"

namespace stricthost {

// The module of a plug-in bundle, loaded for the lifetime of this object.
class PluginModule {
public:
    // bundle: the NAME.plugin folder, or a bare module file. Throws std::runtime_error, naming the file, when
    // there is no module for this system or it has no entry point.
    explicit PluginModule(const std::filesystem::path& bundle);
    ~PluginModule();
    PluginModule(const PluginModule&) = delete;
    PluginModule& operator=(const PluginModule&) = delete;
    PF_FilterProc Entry() const { return m_Entry; }

private:
    void* m_Library;
    PF_FilterProc m_Entry = nullptr;
};

} // namespace stricthost
