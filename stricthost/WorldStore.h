#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "stricthost/ViolationList.h"
#include "stricthost/World.h"

namespace stricthost {

// The existing worlds, found by the address of their pixels. Any thread may call; a world belongs to the
// command that made it.
class WorldStore {
public:
    explicit WorldStore(ViolationList& violations) : m_Violations(violations) {}

    // The pixels are uninitialised. name: for messages. ownedByPlugin: the plug-in has to dispose of it.
    World& Create(const WorldShape& shape, const std::string& name, bool ownedByPlugin = false);
    // Finds the world under another address too, for as long as it lives: the first row of a field.
    void AddAlias(World& world, const void* pixels);
    // Reports a violation for changed guard bytes, and frees the world.
    void Retire(World& world);
    // Null for a world that this host did not make or has freed.
    World* Find(const PF_EffectWorld* def);
    // Frees a world that the plug-in made; false for any other one.
    bool DisposeOfPlugins(PF_EffectWorld* def);

    // Reports worlds that still exist.
    void CheckAtEnd();

private:
    struct Entry {
        std::unique_ptr<World> world;
        bool ownedByPlugin;
    };

    ViolationList& m_Violations;
    std::mutex m_Mutex;
    std::unordered_map<const void*, Entry> m_Worlds;
    std::unordered_map<const void*, World*> m_Aliases;
};

// Makes a world that lives for a scope.
class ScopedWorld {
public:
    ScopedWorld(WorldStore& store, const WorldShape& shape, const std::string& name)
        : m_Store(store), m_World(store.Create(shape, name)) {}
    ~ScopedWorld() { m_Store.Retire(m_World); }
    ScopedWorld(const ScopedWorld&) = delete;
    ScopedWorld& operator=(const ScopedWorld&) = delete;
    World& operator*() const { return m_World; }
    World* operator->() const { return &m_World; }

private:
    WorldStore& m_Store;
    World& m_World;
};

} // namespace stricthost
