#include "stricthost/UtilCallbacks.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

#include "stricthost/HandleCallbacks.h"
#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"
#include "stricthost/PixelFormats.h"
#include "stricthost/PluginWorlds.h"
#include "stricthost/WorldCopy.h"

namespace stricthost {

namespace {

World* FindWorld(const HostCall& call, const PF_EffectWorld* def, const char* what) {
    World* world = call.host.worlds.Find(def);
    if (!world)
        call.Report(std::string("called ") + what + " with a world that does not exist");
    return world;
}

// Documented limits: Premiere Pro copies and fills A, R, G, B worlds of 8 bits only.
bool SupportsCopy(const HostCall& call, const World& world) {
    return !call.host.IsPremiere() || world.Format() == PixelFormats::Argb8;
}

PF_Err Copy(PF_ProgPtr effect, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect, PF_Rect* toRect) {
    HostCall* call = HostCall::From(effect, "copy");
    const World* source = call ? FindWorld(*call, from, "copy") : nullptr;
    World* target = call ? FindWorld(*call, to, "copy") : nullptr;
    if (!source || !target)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->host.options.quirks.limitedCopy && !SupportsCopy(*call, *source))
        return PF_Err_BAD_CALLBACK_PARAM;
    return CopyWorld(*source, *target, fromRect, toRect) ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
}

// A colour of another depth than the world's is an error. Transparent black is allowed, as it is the same in
// every depth.
template <class Pixel>
PF_Err FillWith(PF_ProgPtr effect, const Pixel* color, const PF_Rect* area, PF_EffectWorld* def) {
    HostCall* call = HostCall::From(effect, "fill");
    World* world = call ? FindWorld(*call, def, "fill") : nullptr;
    if (!world)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->host.options.quirks.limitedCopy &&
        (!SupportsCopy(*call, *world) || world->PixelBytes() != sizeof(Pixel)))
        return PF_Err_BAD_CALLBACK_PARAM;
    const Pixel black = {};
    const bool transparent = !color || std::memcmp(color, &black, sizeof black) == 0;
    if (!transparent && world->PixelBytes() != sizeof(Pixel))
        return PF_Err_BAD_CALLBACK_PARAM;
    const PF_PixelFloat zero = {};
    FillWorld(*world, transparent ? static_cast<const void*>(&zero) : color, area);
    return PF_Err_NONE;
}

PF_Err NewWorld(PF_ProgPtr effect, A_long width, A_long height, PF_NewWorldFlags flags, PF_EffectWorld* def) {
    return CreatePluginWorld(effect, width, height,
                             flags & PF_NewWorldFlag_DEEP_PIXELS ? FormatArgb16 : FormatArgb8, def);
}

// The deprecated ids receive narrow text, the others UTF-16; at most AEFX_MAX_PATH units with the terminator.
PF_Err GetPlatformData(PF_ProgPtr effect, PF_PlatDataID which, void* data) {
    HostCall* call = HostCall::From(effect, "get_platform_data");
    if (!call || !data)
        return PF_Err_BAD_CALLBACK_PARAM;
    const Options& options = call->host.options;
    const std::string& path = options.pluginPath;
    if (options.quirks.bundleReference) {
        if (which != PF_PlatData_BUNDLE_REF || !options.bundleReference)
            return PF_Err_BAD_CALLBACK_PARAM;
        std::memcpy(data, &options.bundleReference, sizeof options.bundleReference);
        return PF_Err_NONE;
    }
    if (path.empty() || path.size() >= AEFX_MAX_PATH)
        return PF_Err_BAD_CALLBACK_PARAM;
    switch (which) {
    case PF_PlatData_EXE_FILE_PATH_DEPRECATED:
    case PF_PlatData_RES_FILE_PATH_DEPRECATED:
        std::memcpy(data, path.c_str(), path.size() + 1);
        return PF_Err_NONE;
    case PF_PlatData_EXE_FILE_PATH_W:
    case PF_PlatData_RES_FILE_PATH_W: {
        auto* units = static_cast<A_UTF16Char*>(data);
        for (std::size_t i = 0; i <= path.size(); ++i)
            units[i] = static_cast<unsigned char>(path.c_str()[i]);
        return PF_Err_NONE;
    }
    default:
        return PF_Err_BAD_CALLBACK_PARAM;
    }
}

// The host API passes no size, so the caller must provide a buffer that is large enough.
int HostSprintf(A_char* text, const A_char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, std::numeric_limits<int>::max(), format, arguments);
    va_end(arguments);
    return length;
}

_PF_UtilCallbacks MakeTable() {
    _PF_UtilCallbacks table = {};
    const PF_HandleSuite1& handles = HandleFunctions();
    table.host_new_handle = handles.host_new_handle;
    table.host_lock_handle = handles.host_lock_handle;
    table.host_unlock_handle = handles.host_unlock_handle;
    table.host_dispose_handle = handles.host_dispose_handle;
    table.host_get_handle_size = handles.host_get_handle_size;
    table.host_resize_handle = handles.host_resize_handle;
    table.copy = Copy;
    table.fill = FillWith<PF_Pixel>;
    table.fill16 = FillWith<PF_Pixel16>;
    table.new_world = NewWorld;
    table.dispose_world = DisposePluginWorld;
    table.get_platform_data = GetPlatformData;
    table.ansi.sprintf = HostSprintf;
    table.ansi.strcpy = std::strcpy;
    return table;
}

} // namespace

_PF_UtilCallbacks* UtilTable() {
    static _PF_UtilCallbacks table = MakeTable();
    return &table;
}

} // namespace stricthost
