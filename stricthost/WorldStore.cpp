#include "stricthost/WorldStore.h"

namespace stricthost {

World& WorldStore::Create(const WorldShape& shape, const std::string& name, bool ownedByPlugin) {
    auto world = std::make_unique<World>(shape, name);
    World& result = *world;
    const std::lock_guard lock(m_Mutex);
    m_Worlds[result.Def().data] = {std::move(world), ownedByPlugin};
    return result;
}

void WorldStore::AddAlias(World& world, const void* pixels) {
    const std::lock_guard lock(m_Mutex);
    m_Aliases[pixels] = &world;
}

void WorldStore::Retire(World& world) {
    if (const std::string place = world.DamagedGuard(); !place.empty())
        m_Violations.Add(world.Name() + " was written outside its rows, " + place);
    const std::lock_guard lock(m_Mutex);
    std::erase_if(m_Aliases, [&world](const auto& alias) { return alias.second == &world; });
    m_Worlds.erase(world.Def().data);
}

World* WorldStore::Find(const PF_EffectWorld* def) {
    if (!def)
        return nullptr;
    const std::lock_guard lock(m_Mutex);
    const auto found = m_Worlds.find(def->data);
    if (found != m_Worlds.end())
        return found->second.world.get();
    const auto alias = m_Aliases.find(def->data);
    return alias != m_Aliases.end() ? alias->second : nullptr;
}

bool WorldStore::DisposeOfPlugins(PF_EffectWorld* def) {
    World* world = nullptr;
    {
        const std::lock_guard lock(m_Mutex);
        const auto found = def ? m_Worlds.find(def->data) : m_Worlds.end();
        if (found == m_Worlds.end() || !found->second.ownedByPlugin)
            return false;
        world = found->second.world.get();
    }
    Retire(*world);
    *def = {};
    return true;
}

void WorldStore::CheckAtEnd() {
    const std::lock_guard lock(m_Mutex);
    for (const auto& [pixels, entry] : m_Worlds)
        m_Violations.Add(entry.world->Name() + " was never disposed of");
}

} // namespace stricthost
