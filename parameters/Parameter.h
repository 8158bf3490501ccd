#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// One control of an effect. The script declares it, the host shows it, script and shaders read it. A plain
// value: copies are complete. Used inside the engine's frame lock.
class Parameter {
public:
    // Scripts use the same numbers. ParameterTraits.h has more about each type.
    enum Type : std::uint32_t {
        UNKNOWN = 0,
        FLOAT = 1,   // word 0, float
        POINT = 2,   // words 0 to 2, floats
        COLOR = 3,   // words 0 to 3, floats: red, green, blue, alpha
        LAYER = 4,   // texture handle in `texture`; GL texture name in word 0 once pixels arrived
        POINT2D = 5, // words 0 and 1, floats
        TEXTURE = 6, // texture handle in `texture`
        PATH = 7,
        BOOL = 8,  // word 0, integer
        POPUP = 9, // word 0, integer
        GROUP_START = 10,
        GROUP_END = 11,
        ANGLE = 12, // word 0, float, degrees
    };

    // Bits of `flags`. The three scale bits are applied by the host adapter.
    enum Flag : std::uint32_t {
        NotPublished = 1, // the host shows no control for it
        Disabled = 2,     // the control is greyed out
        ScaleByWidth = 8,
        ScaleByHeight = 16,
        RemoveScale = 32,
    };
    static constexpr unsigned PrecisionShift = 24; // the top byte holds the decimals a FLOAT control shows
    static constexpr std::uint32_t PrecisionMask = 0xFF000000u;

    // Handles of parameters carry this type tag; the low 24 bits count from 1.
    static constexpr std::uint32_t Tag = 0x01000000u;

    // Four 32-bit words, which are floats or a signed integer, depending on the type.
    class Value {
    public:
        float Float(unsigned index) const;
        void SetFloat(unsigned index, float number);
        std::int32_t Int(unsigned index) const { return static_cast<std::int32_t>(m_Words[index]); }
        void SetInt(unsigned index, std::int32_t number) {
            m_Words[index] = static_cast<std::uint32_t>(number);
        }
        std::uint32_t Word(unsigned index) const { return m_Words[index]; }
        const void* Data() const { return m_Words; }
        bool operator==(const Value&) const = default;

    private:
        std::uint32_t m_Words[4] = {};
    };
    static_assert(sizeof(Value) == 16);

    class Factory; // the registry defines it

    Parameter();
    Parameter(std::string scriptName, Type kind, std::string shownName);

    std::string name;                  // in the script, and of the uniforms that it sets
    std::string label;                 // the control's name in the host, may be empty
    Type type = UNKNOWN;               // set at creation, never changed
    std::uint32_t handle = 0;          // 0 marks "no such parameter"
    std::uint32_t flags = 0;           // Flag bits and the precision byte
    bool engineSupplied = false;       // shader uniforms only: a built-in name
    std::int32_t uniformLocation = -1; // shader uniforms only: the GL location
    bool changed = false;              // shader uniforms only: the last store changed the value
    Value value;
    Value min; // word 0, FLOAT only; -100 at creation
    Value max; // word 0, FLOAT only; 100 at creation
    std::uint32_t texture = 0;
    std::string choices;           // pop-up entries separated by "|"
    std::uint32_t choiceCount = 0; // 10 at creation, as the ten digits in `choices`
    std::uint32_t arraySize = 0;   // shader uniforms only: the size that GL reports

    static Parameter invalid; // returned by failed look-ups; its handle is 0
};

// An ordered collection of parameters. The registry overrides it to give access to its master parameters;
// every sequence has its own copies. Failed look-ups return Parameter::invalid.
class ParametersHolder {
public:
    virtual unsigned int GetNumParams() const;
    virtual Parameter& GetParamByIdx(unsigned int index) const;

    Parameter& GetParamById(unsigned int handle);

    // Replaces the whole content by copies of the source's parameters, in the source's order. When two
    // parameters have one handle, GetParamById finds the first.
    void CloneFrom(ParametersHolder& source);

protected:
    ParametersHolder() = default;
    ~ParametersHolder() = default;
    ParametersHolder(const ParametersHolder&) = delete;
    ParametersHolder& operator=(const ParametersHolder&) = delete;

private:
    mutable std::vector<Parameter> m_Parameters;
    std::map<std::uint32_t, Parameter*> m_ByHandle; // points into m_Parameters
};
