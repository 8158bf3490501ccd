#include "stricthost/ReadOnlyWorld.h"

#include "stricthost/HostCore.h"

namespace stricthost {

ReadOnlyWorld::ReadOnlyWorld(HostCall& call, World* world)
    : m_Call(call), m_World(world),
      m_Checksum(world && call.host.options.checkPixels ? world->Checksum() : 0) {}

ReadOnlyWorld::~ReadOnlyWorld() {
    if (!m_World)
        return;
    if (m_Call.host.options.checkPixels && m_World->Checksum() != m_Checksum)
        m_Call.Report("wrote into its input");
    m_Call.host.worlds.Retire(*m_World);
}

} // namespace stricthost
