#pragma once

#include <cstdint>
#include <iterator>
#include <map>

// What the registry needs of a factory without knowing its type.
class EntityFactoryBase {
public:
    virtual ~EntityFactoryBase() = default;
    // A new default-constructed entity under the lowest free handle of the type; returns the handle.
    virtual unsigned int Create() = 0;
    // Destroys the entity; an unknown handle is ignored.
    virtual void Delete(unsigned int handle) = 0;
};

// Owns all entities of one type, ordered by handle. Handles are TypeTag + 1, TypeTag + 2, ...; the numbers of
// deleted entities are given out again. Entities never move while they live.
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

    // The entity with that handle, or T::invalid.
    T& Find(unsigned int handle) {
        const auto found = m_Entities.find(handle);
        return found != m_Entities.end() ? found->second : T::invalid;
    }

    // The index-th entity in ascending handle order, or T::invalid.
    T& At(unsigned int index) {
        return index < m_Entities.size() ? std::next(m_Entities.begin(), index)->second : T::invalid;
    }

    unsigned int Count() const { return static_cast<unsigned int>(m_Entities.size()); }

    const std::map<unsigned int, T>& Entities() const { return m_Entities; }

private:
    std::map<unsigned int, T> m_Entities;
};
