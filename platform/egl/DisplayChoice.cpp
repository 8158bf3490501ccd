#include "platform/egl/DisplayChoice.h"

#include <EGL/eglext.h>

#include <cstdio>
#include <iterator>
#include <string_view>
#include <vector>

namespace {

constexpr const char* s_InstallHint =
    "On Debian and Ubuntu install Mesa: apt install libegl-mesa0 libgl1-mesa-dri";

struct ErrorRow {
    EGLint code;
    const char* name;
};
constexpr ErrorRow s_Errors[] = {
    {EGL_SUCCESS, "EGL_SUCCESS"},
    {EGL_NOT_INITIALIZED, "EGL_NOT_INITIALIZED"},
    {EGL_BAD_ACCESS, "EGL_BAD_ACCESS"},
    {EGL_BAD_ALLOC, "EGL_BAD_ALLOC"},
    {EGL_BAD_ATTRIBUTE, "EGL_BAD_ATTRIBUTE"},
    {EGL_BAD_CONFIG, "EGL_BAD_CONFIG"},
    {EGL_BAD_CONTEXT, "EGL_BAD_CONTEXT"},
    {EGL_BAD_DISPLAY, "EGL_BAD_DISPLAY"},
    {EGL_BAD_MATCH, "EGL_BAD_MATCH"},
    {EGL_BAD_PARAMETER, "EGL_BAD_PARAMETER"},
};

bool HasExtension(const char* list, std::string_view name) {
    std::string_view rest = list ? list : "";
    while (!rest.empty()) {
        const size_t end = rest.find(' ');
        if (rest.substr(0, end) == name)
            return true;
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return false;
}

template <class Function>
Function LoadFunction(const char* name) {
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

// Binds the API of desktop OpenGL, and restores the API that the calling thread had bound at the end of the
// scope.
class ScopedOpenGLApi {
public:
    ScopedOpenGLApi() : m_Before(eglQueryAPI()), m_Bound(eglBindAPI(EGL_OPENGL_API) == EGL_TRUE) {}
    ~ScopedOpenGLApi() {
        if (m_Before != EGL_NONE)
            eglBindAPI(m_Before);
    }
    ScopedOpenGLApi(const ScopedOpenGLApi&) = delete;
    ScopedOpenGLApi& operator=(const ScopedOpenGLApi&) = delete;
    bool Bound() const { return m_Bound; }

private:
    EGLenum m_Before;
    bool m_Bound;
};

std::vector<EGLDeviceEXT> Devices() {
    const auto query = LoadFunction<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
    EGLint count = 0;
    if (!query || !query(0, nullptr, &count) || count <= 0)
        return {};
    std::vector<EGLDeviceEXT> devices(static_cast<size_t>(count));
    if (!query(count, devices.data(), &count))
        return {};
    devices.resize(static_cast<size_t>(count));
    return devices;
}

bool IsHardware(EGLDeviceEXT device) {
    const auto query = LoadFunction<PFNEGLQUERYDEVICESTRINGEXTPROC>("eglQueryDeviceStringEXT");
    return query && !HasExtension(query(device, EGL_EXTENSIONS), "EGL_MESA_device_software");
}

// Returns display handles, none of which is initialised yet.
std::vector<EGLDisplay> Candidates() {
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    const auto platformDisplay = LoadFunction<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    std::vector<EGLDisplay> hardware, software, candidates;
    if (platformDisplay && HasExtension(extensions, "EGL_EXT_platform_device")) {
        for (const EGLDeviceEXT device : Devices())
            (IsHardware(device) ? hardware : software)
                .push_back(platformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr));
    }
    candidates = hardware;
    if (platformDisplay && HasExtension(extensions, "EGL_MESA_platform_surfaceless"))
        candidates.push_back(platformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    candidates.insert(candidates.end(), software.begin(), software.end());
    candidates.push_back(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    return candidates;
}

EGLConfig AnyConfig(EGLDisplay display) {
    // A surface type of 0 accepts configs that have no window surfaces.
    const EGLint wanted[] = {EGL_SURFACE_TYPE, 0, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    return eglChooseConfig(display, wanted, &config, 1, &count) && count > 0 ? config : nullptr;
}

// Returns an empty text when the display can be used, otherwise what it lacks.
std::string TryDisplay(EGLDisplay display, GLDisplay& result) {
    if (display == EGL_NO_DISPLAY)
        return "no display";
    if (!eglInitialize(display, nullptr, nullptr))
        return "eglInitialize: " + EglErrorName(eglGetError());
    const char* extensions = eglQueryString(display, EGL_EXTENSIONS);
    if (!HasExtension(extensions, "EGL_KHR_surfaceless_context"))
        return "no contexts without a drawable";
    std::vector<EGLConfig> configs;
    if (HasExtension(extensions, "EGL_KHR_no_config_context") ||
        HasExtension(extensions, "EGL_MESA_configless_context"))
        configs.push_back(nullptr);
    if (const EGLConfig any = AnyConfig(display))
        configs.push_back(any);
    for (const EGLConfig config : configs) {
        const EGLContext probe = CreateGLContext({display, config}, EGL_NO_CONTEXT);
        if (probe == EGL_NO_CONTEXT)
            continue;
        eglDestroyContext(display, probe);
        result = {display, config};
        return {};
    }
    return "no desktop OpenGL context: " + EglErrorName(eglGetError());
}

} // namespace

std::string EglErrorName(EGLint error) {
    for (const ErrorRow& row : s_Errors)
        if (row.code == error)
            return row.name;
    char text[16];
    std::snprintf(text, sizeof text, "0x%04x", static_cast<unsigned>(error));
    return text;
}

GLDisplay ChooseGLDisplay(std::string& problem) {
    GLDisplay result;
    std::string reasons;
    for (const EGLDisplay candidate : Candidates()) {
        const std::string reason = TryDisplay(candidate, result);
        if (reason.empty()) {
            problem.clear();
            return result;
        }
        if (reasons.find(reason) == std::string::npos)
            reasons += (reasons.empty() ? "" : "; ") + reason;
    }
    problem = "OpenGL is not available through EGL (" + reasons + "). " + s_InstallHint;
    return result;
}

EGLContext CreateGLContext(const GLDisplay& where, EGLContext share) {
    const ScopedOpenGLApi api;
    if (!api.Bound())
        return EGL_NO_CONTEXT;
    // Without a version EGL creates a context of the newest one that still has the fixed-function calls.
    const EGLint attributes[] = {EGL_NONE};
    return eglCreateContext(where.display, where.config, share, attributes);
}
