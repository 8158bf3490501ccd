#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "context/Context.h"
#include "gpu/Vector4.h"
#include "scripting/ScriptCall.h"
#include "scripting/ScriptText.h"
#include "scripting/TextureSource.h"

// The kinds of arguments that native functions take. The trampoline in NativeFunction.h calls the members of
// a kind in this order, each for all arguments before the next:
//   IsPassed  returns false when the call must be refused because the argument is missing.
//   Read      converts the argument to plain data. It can run script code and longjmp, so it owns nothing.
//   Resolve   looks the entity of a handle up.
//   Accepts   returns false when the call must be refused because there is no such entity.
//   Pass      returns what the body receives.
// No script code runs after Read, so the entities exist while the body runs.
namespace Arg {

// A kind whose body receives what was read.
template <class T>
struct Plain {
    using Raw = T;
    static constexpr bool isVariadic = false;
    static bool IsPassed(const ScriptCall&, int) { return true; }
    static T Resolve(const T& raw) { return raw; }
    static bool Accepts(const T&) { return true; }
    static const T& Pass(const T& raw) { return raw; }
};

// A kind whose body receives an entity that exists and is usable, by reference.
template <class T>
struct Reference : Plain<std::uint32_t> {
    static std::uint32_t Read(const ScriptCall& call, int index) { return call.Handle(index); }
    static bool Accepts(const T* found) { return found != nullptr; }
    static T& Pass(T* found) { return *found; }
};

struct Int : Plain<std::int32_t> {
    static std::int32_t Read(const ScriptCall& call, int index) { return call.Int(index); }
};

struct UInt : Plain<std::uint32_t> {
    static std::uint32_t Read(const ScriptCall& call, int index) { return call.UInt(index); }
};

struct Float : Plain<float> {
    static float Read(const ScriptCall& call, int index) { return call.Float(index); }
};

struct Bool : Plain<bool> {
    static bool Read(const ScriptCall& call, int index) { return call.Bool(index); }
};

// Text, which the body receives as UTF-8.
struct Text : Plain<const char*> {
    static const char* Read(const ScriptCall& call, int index) { return call.Text(index); }
    static std::string Resolve(const char* raw) { return Utf8FromScript(raw); }
    static bool Accepts(const std::string&) { return true; }
    static const std::string& Pass(const std::string& text) { return text; }
};

// The name of a uniform. GLSL allows only ASCII in names, so they need no conversion.
struct Name : Plain<const char*> {
    static const char* Read(const ScriptCall& call, int index) { return call.Text(index); }
};

// An argument that is accepted without being converted.
struct Ignored : Plain<std::nullptr_t> {
    static std::nullptr_t Read(const ScriptCall&, int) { return nullptr; }
};

// An array of four numbers: x, y, width and height. Anything else is an empty rectangle.
struct Rectangle : Plain<Vector4> {
    static Vector4 Read(const ScriptCall& call, int index);
};

// A value in the shape that a parameter or uniform of the type takes.
struct TypedValue {
    Parameter::Type type = Parameter::UNKNOWN;
    bool isGiven = false;     // false when the argument has another shape or the type takes no value
    float numbers[4] = {};    // for types whose values are floats
    std::int32_t integer = 0; // for types whose values are integers or handles of textures
};

// A value for the parameter whose handle is the first argument.
struct ParameterValue : Plain<TypedValue> {
    static TypedValue Read(const ScriptCall& call, int index);
};

// A value for the uniform whose shader is the first argument and whose name is the second.
struct UniformValue : Plain<TypedValue> {
    static TypedValue Read(const ScriptCall& call, int index);
};

// A handle of any type, which the body looks up.
struct Handle : Plain<std::uint32_t> {
    static std::uint32_t Read(const ScriptCall& call, int index) { return call.Handle(index); }
};

constexpr bool HasTag(std::uint32_t handle, std::uint32_t tag) {
    return (handle & Context::TagMask) == tag;
}

// A handle with the tag of T. The body receives a pointer, which is null when the entity does not exist.
template <class T>
struct Tagged : Handle {
    static bool Accepts(std::uint32_t handle) { return HasTag(handle, T::Tag); }
    static T* Pass(std::uint32_t handle) { return Context::Current().Find<T>(handle); }
};

// Whether the handle, the GL objects or the pixels of an entity exist.
inline bool IsUsable(const Parameter& parameter) {
    return parameter.handle != 0;
}
inline bool IsUsable(const Shader& shader) {
    return shader.usable(); // whatever its error text is
}
inline bool IsUsable(const RenderTarget& target) {
    return target.usable();
}
inline bool IsUsable(const Surface& surface) {
    return surface.width() != 0 && surface.height() != 0 && surface.pixels();
}

// An entity of type T.
template <class T>
struct Live : Reference<T> {
    static T* Resolve(std::uint32_t handle) {
        T* const found = HasTag(handle, T::Tag) ? Context::Current().Find<T>(handle) : nullptr;
        return found && IsUsable(*found) ? found : nullptr;
    }
};

// A texture or a render target, but not a parameter.
struct Image : Reference<Texture> {
    static Texture* Resolve(std::uint32_t handle) {
        if (HasTag(handle, RenderTarget::Tag))
            return Live<RenderTarget>::Resolve(handle);
        Texture* const texture = HasTag(handle, Texture::Tag) ? ResolveTexture(handle) : nullptr;
        return texture && texture->id() != 0 ? texture : nullptr;
    }
};

// Whatever ResolveTexture accepts as a texture.
struct TextureSource : Reference<Texture> {
    static Texture* Resolve(std::uint32_t handle) {
        Texture* const texture = ResolveTexture(handle);
        return texture && texture->id() != 0 ? texture : nullptr;
    }
};

// An argument of kind Kind that is refused when it is undefined.
template <class Kind>
struct Given : Kind {
    static bool IsPassed(const ScriptCall& call, int index) { return call.IsGiven(index); }
};

// The two below make a function variadic. An argument that the script passes as undefined counts as passed.
// The call is refused when fewer arguments were passed.
template <class Kind>
struct Passed : Kind {
    static constexpr bool isVariadic = true;
    static bool IsPassed(const ScriptCall& call, int index) { return index < call.Count(); }
};

// 0 or an empty text when fewer arguments were passed.
template <class Kind>
struct Optional : Kind {
    static constexpr bool isVariadic = true;
    static typename Kind::Raw Read(const ScriptCall& call, int index) {
        return index < call.Count() ? Kind::Read(call, index) : Default(typename Kind::Raw{});
    }

private:
    static std::int32_t Default(std::int32_t) { return 0; }
    static const char* Default(const char*) { return ""; }
};

} // namespace Arg
