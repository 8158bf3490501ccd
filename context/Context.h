#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "context/EntityFactory.h"
#include "context/Sequence.h"
#include "gpu/RenderTarget.h"
#include "gpu/Shader.h"
#include "gpu/Surface.h"
#include "gpu/Texture.h"
#include "parameters/Parameter.h"

class Parameter::Factory : public EntityFactory<Parameter, Parameter::Tag> {};
class Shader::Factory : public EntityFactory<Shader, Shader::Tag> {};
class RenderTarget::Factory : public EntityFactory<RenderTarget, RenderTarget::Tag> {};
class Texture::Factory : public EntityFactory<Texture, Texture::Tag> {};
class Surface::Factory : public EntityFactory<Surface, Surface::Tag> {};

// The only registry. It owns every entity that the script creates and every sequence. Entities have 32-bit
// handles: the top byte is the tag of the type, the low 24 bits count from 1, and handle 0 means "none".
// Threads: the registry takes no locks and is used only inside the engine's frame lock.
class Context : public ParametersHolder {
public:
    static constexpr unsigned int TagMask = 0xFF000000u;

    // Returns the registry, which is created uninitialised on first use and lives until the module unloads.
    static Context& Current();

    // The master parameters in ascending handle order, which is the order of the effect's parameters.
    // GetParamByIdx returns Parameter::invalid when the index is out of range.
    unsigned int GetNumParams() const override;
    Parameter& GetParamByIdx(unsigned int index) const override;
    virtual ~Context();

    // Starts an empty registry with one sequence, which becomes the current one.
    void Init();
    // Destroys every sequence and every entity; all handles and sequence indices become invalid. GL objects
    // are freed only when the engine's GL context is current. Does nothing when not initialised.
    void Release();

    // Creates a sequence with copies of all parameters and returns its index, the lowest free one.
    unsigned int CreateSequence();
    // Destroys a sequence and frees the GL storage of its frame. Unknown and released indices are ignored.
    void ReleaseSequence(unsigned int index);
    // Returns the sequence with that index, or null.
    Sequence* FindSequence(unsigned int index) const;
    // Returns the sequence of the current instance, or null when the current index is not in use.
    Sequence* CurrentSequence() const { return FindSequence(m_CurrentSequence); }
    void SetCurrentSequence(unsigned int index) { m_CurrentSequence = index; }

    // Creates an entity, initialises it from the arguments and returns its handle, or 0 when the registry is
    // not initialised. An entity whose initialisation fails stays registered, but cannot be used.
    template <class T, class... Args>
    unsigned int InitResource(Args&&... args);

    // Returns the entity with that handle, or null. A parameter is taken from the current sequence's copies
    // first, so that instances never see each other's values.
    template <class T>
    T* Find(unsigned int handle);
    // Returns the registry's own entity, or null. For a parameter this is the master, never a copy.
    template <class T>
    T* FindOwn(unsigned int handle);
    // Like Find, but returns T::invalid, whose handle or GL name is 0, instead of null.
    template <class T>
    T& GetResource(unsigned int handle);
    // Returns the registry's own entities of a type in ascending handle order. The pointers are valid until
    // the script releases an entity.
    template <class T>
    std::vector<T*> LiveEntities();

    // Destroys the entity with that handle, whatever its type. Unknown handles are ignored.
    void DeleteResource(unsigned int handle);

    // Returns the error texts of all shaders in handle order. Each has a first line 'Shader "name"' and ends
    // with a line feed. Empty when there are no errors. The driver counts the lines of the rewritten shaders.
    enum class ErrorLines { Driver, Author };
    std::string GetErrors(ErrorLines lines = ErrorLines::Driver) const;

    // Size of the composition in pixels and its pixel aspect ratio, as last reported by the host.
    void SetCompositionSize(unsigned int width, unsigned int height, float scale);
    unsigned int CompositionWidth() const { return m_CompositionWidth; }
    unsigned int CompositionHeight() const { return m_CompositionHeight; }
    float CompositionScale() const { return m_CompositionScale; }

private:
    Context() = default;

    template <class T>
    typename T::Factory* FindFactory() const;

    static void Initialise(Parameter& parameter, std::string name, Parameter::Type type, std::string label) {
        parameter = Parameter(std::move(name), type, std::move(label));
    }
    static void Initialise(Shader& shader, const std::string& name, const std::string& source) {
        shader.init(name, source);
    }
    static void Initialise(RenderTarget& target, unsigned width, unsigned height, unsigned format) {
        target.init(width, height, format);
    }
    static void Initialise(Texture& texture, unsigned width, unsigned height, unsigned format) {
        texture.init(width, height, format, true);
    }
    static void Initialise(Texture& texture, const std::string& file) { texture.load(file); }
    static void Initialise(Surface& surface, unsigned width, unsigned height, unsigned format) {
        surface.init(width, height, format, true);
    }

    std::map<unsigned int, std::unique_ptr<EntityFactoryBase>> m_Factories; // by tag
    std::vector<std::unique_ptr<Sequence>> m_Sequences; // null where a sequence was released
    unsigned int m_CurrentSequence = 0;
    unsigned int m_CompositionWidth = 0;
    unsigned int m_CompositionHeight = 0;
    float m_CompositionScale = 1.0f;
    bool m_Initialised = false;
    std::wstring m_ResourceDirectory; // always empty: shader paths are "/" + name + ".frag"
};

template <class T>
typename T::Factory* Context::FindFactory() const {
    const auto found = m_Factories.find(T::Tag);
    return found != m_Factories.end() ? static_cast<typename T::Factory*>(found->second.get()) : nullptr;
}

template <class T, class... Args>
unsigned int Context::InitResource(Args&&... args) {
    typename T::Factory* const factory = FindFactory<T>();
    if (!factory)
        return 0;
    const unsigned int handle = factory->Create();
    Initialise(*factory->Find(handle), std::forward<Args>(args)...);
    return handle;
}

template <class T>
T* Context::Find(unsigned int handle) {
    if constexpr (std::is_same_v<T, Parameter>) {
        if (Sequence* const sequence = CurrentSequence()) {
            Parameter& own = sequence->GetParamById(handle);
            if (own.handle != 0)
                return &own;
        }
    }
    return FindOwn<T>(handle);
}

template <class T>
T* Context::FindOwn(unsigned int handle) {
    typename T::Factory* const factory = FindFactory<T>();
    return factory ? factory->Find(handle) : nullptr;
}

template <class T>
T& Context::GetResource(unsigned int handle) {
    T* const found = Find<T>(handle);
    return found ? *found : T::invalid;
}

template <class T>
std::vector<T*> Context::LiveEntities() {
    std::vector<T*> entities;
    if (typename T::Factory* const factory = FindFactory<T>())
        for (auto& [handle, entity] : factory->Entities())
            entities.push_back(&entity);
    return entities;
}
