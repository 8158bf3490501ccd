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

// The one registry: it owns every entity that the script creates and every sequence, and names entities by
// handles: the top byte is the type's tag, the low 24 bits count from 1, 0 is none.
class Context : public ParametersHolder {
public:
    static constexpr unsigned int TagMask = 0xFF000000u;

    // Made on first use, not initialised; lives until the module unloads.
    static Context& Current();

    // The master parameters in ascending handle order, which is the order of the effect's parameters.
    unsigned int GetNumParams() const override;
    Parameter& GetParamByIdx(unsigned int index) const override;
    virtual ~Context();

    // Starts an empty registry with one sequence, which becomes the current one.
    void Init();
    // Destroys every sequence and every entity; all handles and sequence indices are dead afterwards. GL
    // objects are freed only when the engine's GL context is current. Nothing when not initialised.
    void Release();

    // A new sequence with copies of all parameters, in the lowest free index.
    unsigned int CreateSequence();
    // Unknown and released indices are ignored.
    void ReleaseSequence(unsigned int index);
    // The sequence of the instance at work, or null when the current index names none.
    Sequence* CurrentSequence() const;
    void SetCurrentSequence(unsigned int index) { m_CurrentSequence = index; }

    // Creates an entity and initialises it from the arguments; returns its handle, 0 when not initialised. An
    // entity that fails to initialise stays registered, unusable.
    template <class T, class... Args>
    unsigned int InitResource(Args&&... args);

    // The entity with that handle, or T::invalid. A parameter comes from the current sequence's copies when
    // it is there, so instances never see each other's values.
    template <class T>
    T& GetResource(unsigned int handle);
    // The same without the sequence: the registry's own entity, for a parameter the master.
    template <class T>
    T& GetOwnResource(unsigned int handle);

    // Destroys the entity with that handle, whatever its type; unknown handles are ignored.
    void DeleteResource(unsigned int handle);

    // The error texts of all shaders, in handle order: 'Shader "name"', the text, each ending a line.
    std::string GetErrors() const;

    // Size of the composition in pixels and its pixel aspect, as the host last told them.
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
    std::vector<std::unique_ptr<Sequence>> m_Sequences;                     // holes are null
    unsigned int m_CurrentSequence = 0;
    unsigned int m_CompositionWidth = 0;
    unsigned int m_CompositionHeight = 0;
    float m_CompositionScale = 1.0f;
    bool m_Initialised = false;
    std::wstring m_ResourceDirectory; // stays empty: shader paths are "/" + name + ".frag"
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
    Initialise(factory->Find(handle), std::forward<Args>(args)...);
    return handle;
}

template <class T>
T& Context::GetResource(unsigned int handle) {
    if constexpr (std::is_same_v<T, Parameter>) {
        if (Sequence* const sequence = CurrentSequence()) {
            Parameter& own = sequence->GetParamById(handle);
            if (own.handle != 0)
                return own;
        }
    }
    return GetOwnResource<T>(handle);
}

template <class T>
T& Context::GetOwnResource(unsigned int handle) {
    typename T::Factory* const factory = FindFactory<T>();
    return factory ? factory->Find(handle) : T::invalid;
}
