#include "stricthost/PluginModule.h"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace stricthost {

namespace {

constexpr const char* s_SystemFolder = FX_MODULE_FOLDER;
// Names of the entry point: this project's, and the one of the published templates.
constexpr const char* s_EntryNames[] = {"EntryPointFunc", "EffectMain"};

std::filesystem::path ModuleOf(std::filesystem::path bundle) {
    if (!bundle.has_filename())
        bundle = bundle.parent_path(); // a path that ends in a slash
    if (std::filesystem::is_regular_file(bundle))
        return bundle;
    if (!std::filesystem::is_directory(bundle))
        throw std::runtime_error(bundle.string() +
                                 ": not a plug-in bundle (a folder NAME.plugin) or module file");
    std::filesystem::path module = bundle / "Contents" / s_SystemFolder / bundle.stem();
    if (!std::filesystem::is_regular_file(module))
        throw std::runtime_error(bundle.string() + ": the bundle has no module " + module.string());
    return module;
}

std::string LoaderError() {
    const char* text = dlerror();
    return text ? text : "unknown error";
}

} // namespace

PluginModule::PluginModule(const std::filesystem::path& bundle) {
    const std::string module = std::filesystem::absolute(ModuleOf(bundle)).string();
    m_Library = dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_Library)
        throw std::runtime_error(module + ": cannot be loaded: " + LoaderError());
    for (const char* name : s_EntryNames)
        if (!m_Entry)
            m_Entry = reinterpret_cast<PF_FilterProc>(dlsym(m_Library, name));
    if (!m_Entry) {
        dlclose(m_Library);
        throw std::runtime_error(module + ": has no function EntryPointFunc or EffectMain");
    }
}

PluginModule::~PluginModule() {
    dlclose(m_Library);
}

} // namespace stricthost
