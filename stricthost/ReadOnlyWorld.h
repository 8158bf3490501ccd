#pragma once

#include <cstdint>

#include "stricthost/HostCall.h"
#include "stricthost/World.h"

namespace stricthost {

// An input that the plug-in may read but not write, for the time of one command.
class ReadOnlyWorld {
public:
    // world: may be null for an empty layer. The command must outlive this object.
    ReadOnlyWorld(HostCall& call, World* world);
    // Reports a violation when the pixels changed and Options::checkPixels is set. Retires the world.
    ~ReadOnlyWorld();
    ReadOnlyWorld(const ReadOnlyWorld&) = delete;
    ReadOnlyWorld& operator=(const ReadOnlyWorld&) = delete;
    World* Get() const { return m_World; }

private:
    HostCall& m_Call;
    World* m_World;
    std::uint64_t m_Checksum;
};

} // namespace stricthost
