#include "stricthost/PluginWorlds.h"

#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"
#include "stricthost/PixelFormats.h"

namespace stricthost {

PF_Err CreatePluginWorld(PF_ProgPtr effect, A_long width, A_long height, std::uint32_t format,
                         PF_EffectWorld* def) {
    HostCall* call = HostCall::From(effect, "new_world");
    if (!call || !def || width < 0 || height < 0 || FormatBits(format) == 0)
        return PF_Err_BAD_CALLBACK_PARAM;
    const WorldShape shape = call->host.Shape(width, height, format);
    World& world = call->host.worlds.Create(shape, std::string("a world made in ") + call->Name(), true);
    world.Clear();
    *def = world.Def();
    return PF_Err_NONE;
}

PF_Err DisposePluginWorld(PF_ProgPtr effect, PF_EffectWorld* def) {
    HostCall* call = HostCall::From(effect, "dispose_world");
    if (!call)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->host.worlds.DisposeOfPlugins(def))
        return PF_Err_NONE;
    call->Report("disposed of a world that it did not make");
    return PF_Err_BAD_CALLBACK_PARAM;
}

} // namespace stricthost
