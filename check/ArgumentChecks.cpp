#include "check/ArgumentChecks.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "check/CallSignatures.h"
#include "context/Context.h"
#include "packaging/ScriptScan.h"
#include "parameters/ParameterTraits.h"
#include "toolkit/TextParsing.h"

namespace fxhost {

namespace {

using Json = nlohmann::json;
using Kind = ArgumentKind;

struct HandleKind {
    unsigned tag;
    const char* name;
    bool (*exists)(unsigned handle);
};

template <class T>
bool Exists(unsigned handle) {
    return Context::Current().Find<T>(handle) != nullptr;
}

constexpr HandleKind s_HandleKinds[] = {
    {Parameter::Tag, "a parameter", Exists<Parameter>},
    {Shader::Tag, "a shader", Exists<Shader>},
    {RenderTarget::Tag, "a render target", Exists<RenderTarget>},
    {Texture::Tag, "a texture", Exists<Texture>},
    {Surface::Tag, "a surface", Exists<Surface>},
};

const HandleKind* KindOf(unsigned handle) {
    const auto* const found =
        std::find_if(std::begin(s_HandleKinds), std::end(s_HandleKinds),
                     [&](const HandleKind& kind) { return kind.tag == (handle & Context::TagMask); });
    return found == std::end(s_HandleKinds) ? nullptr : found;
}

struct Expectation {
    Kind kind;
    const char* text;
    std::vector<unsigned> tags; // of handles that are accepted
};

const Expectation* HandleExpectation(Kind kind) {
    static const Expectation s_Rows[] = {
        {Kind::Parameter, "a parameter", {Parameter::Tag}},
        {Kind::Shader, "a shader", {Shader::Tag}},
        {Kind::Target, "a render target", {RenderTarget::Tag}},
        {Kind::Image, "a texture or a render target", {Texture::Tag, RenderTarget::Tag}},
        {Kind::ImageSource,
         "a texture, a render target or a layer parameter",
         {Texture::Tag, RenderTarget::Tag, Parameter::Tag}},
        {Kind::Surface, "a surface", {Surface::Tag}},
    };
    const auto* const found = std::find_if(std::begin(s_Rows), std::end(s_Rows),
                                           [&](const Expectation& row) { return row.kind == kind; });
    return found == std::end(s_Rows) ? nullptr : found;
}

bool IsNumber(const Json& value) {
    return value.is_number() || value.is_boolean();
}

bool IsInteger(const Json& value, double low, double high) {
    return value.is_number() && value.get<double>() >= low && value.get<double>() <= high;
}

std::string Describe(const Json& value) {
    if (value.is_array())
        return "an array of " + std::to_string(value.size()) + " elements";
    if (value.is_string())
        return "the text " + value.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (value.is_object())
        return value.at("is").get<std::string>() == "undefined" ? "undefined"
                                                                : value.at("is").get<std::string>();
    return value.dump();
}

// A handle is described with its kind.
std::string DescribeHandle(const Json& value) {
    const unsigned handle = HandleIn(value);
    const HandleKind* const kind = KindOf(handle);
    if (!kind)
        return value == 0 ? "0, which is no handle" : Describe(value);
    return kind->exists(handle) ? kind->name : std::string(kind->name) + " that was released";
}

bool Accepts(const Expectation& expected, const Json& value) {
    const unsigned handle = HandleIn(value);
    const HandleKind* const kind = KindOf(handle);
    return kind && std::find(expected.tags.begin(), expected.tags.end(), kind->tag) != expected.tags.end() &&
           kind->exists(handle);
}

std::string NumbersProblem(const Json& value, std::size_t count) {
    const std::string expected = "an array of " + std::to_string(count) + " numbers";
    if (!value.is_array())
        return expected + ", but is " + Describe(value);
    if (value.size() != count)
        return expected + ", but has " + std::to_string(value.size());
    const auto bad = std::find_if_not(value.begin(), value.end(), IsNumber);
    return bad == value.end() ? "" : expected + ", but one element is " + Describe(*bad);
}

// What a parameter or a uniform of this type takes.
std::string TypedProblem(const Json& value, Parameter::Type type) {
    const ParameterTraits& traits = TraitsOf(type);
    if (traits.isArray())
        return NumbersProblem(value, traits.components);
    if (traits.isTexture())
        return Accepts(*HandleExpectation(Kind::ImageSource), value)
                   ? ""
                   : "a texture or a render target, but is " + DescribeHandle(value);
    if ((traits.isFloat() || traits.isInteger()) && !IsNumber(value))
        return "a number, but is " + Describe(value);
    return "";
}

std::string ParameterValueProblem(const ScriptCall& call, const Json& value) {
    const Parameter* const parameter = Context::Current().Find<Parameter>(HandleIn(call.arguments[0]));
    const std::string problem = parameter ? TypedProblem(value, parameter->type) : "";
    return problem.empty()
               ? ""
               : problem + " (\"" + parameter->name + "\" is a " + TraitsOf(parameter->type).name + ")";
}

// A uniform that the source declares but does not use does not exist in GL; setting it is no mistake.
std::string UniformNameProblem(Shader& shader, const std::string& name) {
    if (!shader.errorText().empty() || shader.getParamLocation(name.c_str()) >= 0 ||
        ContainsWord(WithoutComments(shader.source()), name))
        return "";
    return "there is no uniform \"" + name + "\" in the shader";
}

std::string UniformValueProblem(const ScriptCall& call, const Json& value) {
    Shader* const shader = Context::Current().Find<Shader>(HandleIn(call.arguments[0]));
    if (!shader || !call.arguments[1].is_string())
        return "";
    const std::string name = call.arguments[1];
    const std::string problem = TypedProblem(value, shader->getParameterInfo(name).type);
    return problem.empty() ? "" : problem + " (uniform \"" + name + "\")";
}

struct NamedConstant {
    int name;
    std::vector<int> values; // empty: any number
};

// GL numbers of texture parameters and of their values.
const std::vector<NamedConstant>& TextureParameters() {
    static const std::vector<int> s_Wraps = {0x2901, 0x812F, 0x812D, 0x8370};
    static const std::vector<int> s_Channels = {0x1903, 0x1904, 0x1905, 0x1906, 0, 1};
    static const std::vector<NamedConstant> s_Rows = {
        {0x2800, {0x2600, 0x2601}},
        {0x2801, {0x2600, 0x2601, 0x2700, 0x2701, 0x2702, 0x2703}},
        {0x2802, s_Wraps},
        {0x2803, s_Wraps},
        {0x813A, {}},
        {0x813B, {}},
        {0x813C, {}},
        {0x813D, {}},
        {0x8501, {}},
        {0x8E42, s_Channels},
        {0x8E43, s_Channels},
        {0x8E44, s_Channels},
        {0x8E45, s_Channels},
    };
    return s_Rows;
}

const NamedConstant* FindTextureParameter(const Json& name) {
    const auto& rows = TextureParameters();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const NamedConstant& row) { return name == row.name; });
    return found == rows.end() ? nullptr : &*found;
}

// SV_GL.CLAMP and SV_GL.REPEAT have numbers that OpenGL does not know.
const char* WrapRemedy(const Json& value) {
    if (value == 0x2805)
        return " (SV_GL.REPEAT), which OpenGL ignores; pass 0x2901, OpenGL's own number";
    return value == 0x2804 ? " (SV_GL.CLAMP), which OpenGL ignores; use SV_GL.CLAMP_TO_EDGE" : "";
}

std::string TextureValueProblem(const ScriptCall& call, const Json& value) {
    if (!IsNumber(value))
        return "a member of SV_GL or a number, but is " + Describe(value);
    const NamedConstant* const row = FindTextureParameter(call.arguments[1]);
    const bool known = !row || row->values.empty() ||
                       std::find(row->values.begin(), row->values.end(), value) != row->values.end();
    return known ? ""
                 : "a member of SV_GL that fits argument 2, but is " + Describe(value) + WrapRemedy(value);
}

// What the argument must be, and what it is; empty when it is right.
std::string Problem(const ScriptCall& call, Kind kind, const Json& value) {
    if (const Expectation* const expected = HandleExpectation(kind))
        return Accepts(*expected, value) ? ""
                                         : std::string(expected->text) + ", but is " + DescribeHandle(value);
    switch (kind) {
    case Kind::Number:
        return IsNumber(value) ? "" : "a number, but is " + Describe(value);
    case Kind::Boolean:
        return IsNumber(value) ? "" : "true or false, but is " + Describe(value);
    case Kind::Text:
        return value.is_string() ? "" : "a text, but is " + Describe(value);
    case Kind::Handle:
        return value.is_number() ? "" : "a handle, but is " + Describe(value);
    case Kind::TypeCode:
        return IsInteger(value, 1, Parameter::ANGLE) ? "" : "a member of SV_Type, but is " + Describe(value);
    case Kind::Depth:
        return value == 8 || value == 16 || value == 32 ? "" : "8, 16 or 32 bits, but is " + Describe(value);
    case Kind::Rectangle:
        return NumbersProblem(value, 4);
    case Kind::ParameterValue:
        return ParameterValueProblem(call, value);
    case Kind::UniformValue:
        return UniformValueProblem(call, value);
    case Kind::TextureParameter:
        return FindTextureParameter(value)
                   ? ""
                   : "a member of SV_GL that names a parameter of a texture, but is " + Describe(value);
    case Kind::TextureValue:
        return TextureValueProblem(call, value);
    default:
        return "";
    }
}

bool IsUndefined(const Json& value) {
    return value.is_object() && value.at("is") == "undefined";
}

// Two handles that would be right in each other's places.
bool AreSwapped(const ScriptCall& call, const CallSignature& signature) {
    if (call.arguments.size() < 2 || signature.arguments.size() < 2)
        return false;
    const Expectation* const first = HandleExpectation(signature.arguments[0].kind);
    const Expectation* const second = HandleExpectation(signature.arguments[1].kind);
    return first && second && Accepts(*first, call.arguments[1]) && Accepts(*second, call.arguments[0]);
}

std::string CountProblem(const ScriptCall& call, const CallSignature& signature) {
    const std::size_t given = call.arguments.size(), most = signature.arguments.size();
    if (given >= signature.required && given <= most)
        return "";
    const std::string range = signature.required == most
                                  ? std::to_string(most)
                                  : std::to_string(signature.required) + " to " + std::to_string(most);
    return signature.function + std::string(" takes ") + range + " arguments, but got " +
           std::to_string(given);
}

std::string NameProblem(const ScriptCall& call) {
    Shader* const shader = Context::Current().Find<Shader>(HandleIn(call.arguments[0]));
    if (!shader)
        return "";
    if (call.function == "SV_setShaderParamVal" && call.arguments[1].is_string())
        return UniformNameProblem(*shader, call.arguments[1]);
    const Parameter* const parameter = Context::Current().Find<Parameter>(HandleIn(call.arguments[1]));
    return call.function == "SV_setShaderParam" && parameter ? UniformNameProblem(*shader, parameter->name)
                                                             : "";
}

std::string RemedyFor(const ScriptCall& call, const CallSignature& signature) {
    if (AreSwapped(call, signature))
        return "; arguments 1 and 2 are swapped";
    if (call.function == "SV_blitRenderTarget" && KindOf(HandleIn(call.arguments[0])) == KindOf(Texture::Tag))
        return "; draw a texture with a shader instead";
    return "";
}

} // namespace

unsigned HandleIn(const Json& value) {
    return value.is_number_unsigned() && value.get<std::uint64_t>() <= 0xFFFFFFFFu ? value.get<unsigned>()
                                                                                   : 0;
}

std::string ArgumentProblem(const ScriptCall& call) {
    const auto signatures = CallSignatures();
    const auto signature = std::find_if(signatures.begin(), signatures.end(), [&](const CallSignature& row) {
        return row.function == call.function;
    });
    if (signature == signatures.end())
        return "";
    if (const std::string problem = CountProblem(call, *signature); !problem.empty())
        return problem;
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
        if (i >= signature->required && IsUndefined(call.arguments[i]))
            continue;
        const CallArgument& argument = signature->arguments[i];
        if (const std::string problem = Problem(call, argument.kind, call.arguments[i]); !problem.empty())
            return call.function + ": argument " + std::to_string(i + 1) + " (" + argument.name +
                   ") must be " + problem + RemedyFor(call, *signature);
    }
    const std::string problem = call.arguments.size() < 2 ? "" : NameProblem(call);
    return problem.empty() ? "" : call.function + ": " + problem;
}

} // namespace fxhost
