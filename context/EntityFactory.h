#pragma once

#include <cstdint>
#include <map>

// The part of a factory that does not depend on the type of its entities.
class EntityFactoryBase {
public:
    virtual ~EntityFactoryBase() = default;
    // Creates a default-constructed entity under the lowest free handle of the type and returns the handle.
    virtual unsigned int Create() = 0;
    // Destroys the entity. Unknown handles are ignored.
    virtual void Delete(unsigned int handle) = 0;
};

// Owns all entities of one type, ordered by handle. Handles are TypeTag + 1, TypeTag + 2, and so on; the
// numbers of deleted entities are reused. The address of an entity does not change while the entity exists.
template <class T, std::uint32_t TypeTag>
class EntityFactory : public EntityFactoryBase {
public:
    unsigned int Create() override {
        unsigned int candidate = TypeTag + 1;
        auto next = m_Entities.begin();
        for (; next != m_Entities.end() && next->first == candidate; ++next)
            ++candidate;
        m_Entities.try_emplace(next, candidate);
        return candidate;
    }

    void Delete(unsigned int handle) override { m_Entities.erase(handle); }

    // Returns the entity with that handle, or null.
    T* Find(unsigned int handle) {
        const auto found = m_Entities.find(handle);
        return found != m_Entities.end() ? &found->second : nullptr;
    }

    // All entities by handle, in ascending order.
    std::map<unsigned int, T>& Entities() { return m_Entities; }

private:
    std::map<unsigned int, T> m_Entities;
};
