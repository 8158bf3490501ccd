#include "check/CallChecks.h"

#include <algorithm>
#include <utility>

#include "check/ArgumentChecks.h"
#include "check/UniformChecks.h"
#include "context/Context.h"
#include "gpu/GLLimits.h"
#include "packaging/ScriptScan.h"

namespace fxhost {

namespace {

bool IsTrue(const ScriptCall& call, std::size_t index) {
    return index < call.arguments.size() &&
           (call.arguments[index] == true ||
            (call.arguments[index].is_number() && call.arguments[index] != 0));
}

unsigned HandleAt(const ScriptCall& call, std::size_t index) {
    return index < call.arguments.size() ? HandleIn(call.arguments[index]) : 0;
}

// True when the extent of a target is that of the frame, or a half, a third, ... an eighth of it.
bool IsDerived(unsigned target, unsigned frame) {
    for (unsigned divisor = 1; divisor <= 8; ++divisor)
        if (target == frame / divisor || target == (frame + divisor - 1) / divisor)
            return true;
    return false;
}

// The functions that draw into a target: where their arguments are.
struct DrawingFunction {
    const char* name;
    std::size_t target, flip;
};
constexpr DrawingFunction s_Drawing[] = {
    {"SV_renderShader", 1, 2}, {"SV_blitRenderTarget", 1, 2}, {"SV_surfaceCopyTo", 1, 2}};

} // namespace

void CallChecks::beginFrame(unsigned width, unsigned height, bool isPreview) {
    m_IsPreview = isPreview;
    m_Width = width;
    m_Height = height;
    m_Frame = {};
}

FrameCalls CallChecks::endFrame() {
    m_Stage = Stage::Idle;
    return m_Frame;
}

std::vector<Diagnostic> CallChecks::take() {
    return std::exchange(m_Found, {});
}

int CallChecks::lineOf(unsigned handle) const {
    const auto found = m_Created.find(handle);
    return found == m_Created.end() ? 0 : found->second.line;
}

void CallChecks::warn(int line, const std::string& text) {
    m_Found.push_back({m_File, line, Severity::Warning, text, {}});
}

void CallChecks::onCall(const ScriptCall& call) {
    if (const std::string problem = ArgumentProblem(call); !problem.empty() && !m_Ignored.contains(call.line))
        warn(call.line, problem);
    noteCreation(call);
    noteUniform(call);
    noteDrawing(call);
    if (call.function == "SV_renderShader")
        checkPass(call);
    if (call.function == "SV_setOutputExtent")
        checkOutputExtent(call);
}

void CallChecks::noteCreation(const ScriptCall& call) {
    if (call.function.starts_with("SV_init") || call.function == "SV_textureToSurface" ||
        call.function == "SV_surfaceToTexture")
        m_Created[HandleIn(call.result)] = {call.line, m_Width, m_Height};
}

void CallChecks::noteUniform(const ScriptCall& call) {
    const unsigned shader = HandleAt(call, 0);
    if (call.function == "SV_renderShader")
        m_DrawnShaders.insert(shader);
    if (call.function == "SV_setShaderParamVal" && call.arguments.size() > 1 && call.arguments[1].is_string())
        m_SetUniforms.insert({shader, call.arguments[1].get<std::string>()});
    const Parameter* const parameter = call.function == "SV_setShaderParam"
                                           ? Context::Current().Find<Parameter>(HandleAt(call, 1))
                                           : nullptr;
    if (parameter)
        m_SetUniforms.insert({shader, parameter->name});
}

std::vector<Diagnostic> CallChecks::unsetUniforms(const EffectSource& source) const {
    std::vector<Diagnostic> found;
    const std::string script = source.ReadText("fx.js").value_or("");
    for (const unsigned handle : m_DrawnShaders) {
        Shader* const shader = Context::Current().Find<Shader>(handle);
        if (!shader || !shader->usable() || !shader->errorText().empty())
            continue;
        for (const Parameter& uniform : shader->parameters()) {
            const bool isKnown = uniform.type != Parameter::UNKNOWN && !IsSetByEngine(uniform.name);
            if (isKnown && !m_SetUniforms.contains({handle, uniform.name}) &&
                !NamesUniform(script, uniform.name))
                found.push_back(UnsetUniform(source, *shader, uniform.name));
        }
    }
    return found;
}

void CallChecks::noteDrawing(const ScriptCall& call) {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    for (const DrawingFunction& drawing : s_Drawing) {
        if (call.function != drawing.name || call.result != true)
            continue;
        m_Frame.flips += IsTrue(call, drawing.flip);
        m_Frame.reachesFrame |= sequence && HandleAt(call, drawing.target) == sequence->RenderTargetHandle();
    }
}

void CallChecks::checkPass(const ScriptCall& call) {
    Shader* const shader = Context::Current().Find<Shader>(HandleAt(call, 0));
    const RenderTarget* const target = Context::Current().Find<RenderTarget>(HandleAt(call, 1));
    if (!shader || !target || !target->usable())
        return;
    for (const Parameter& uniform : shader->parameters())
        if (uniform.type == Parameter::LAYER && uniform.value.Int(0) == static_cast<int>(target->id()))
            warn(call.line, "the pass reads the render target that it draws into (uniform \"" + uniform.name +
                                "\"); OpenGL leaves the result undefined, so draw into another target");
    checkTargetSize(HandleAt(call, 1), *target);
    checkFragCoord(call, *shader);
}

void CallChecks::checkTargetSize(unsigned handle, const RenderTarget& target) {
    const auto found = m_Created.find(handle);
    if (m_IsPreview || found == m_Created.end() || found->second.frameWidth == 0)
        return;
    const Creation& creation = found->second;
    const bool sameFrame = creation.frameWidth == m_Width && creation.frameHeight == m_Height;
    if (!sameFrame && IsDerived(target.width(), creation.frameWidth) &&
        IsDerived(target.height(), creation.frameHeight) &&
        !(IsDerived(target.width(), m_Width) && IsDerived(target.height(), m_Height)))
        warn(creation.line,
             "the render target keeps the size of an earlier frame; release it and make a new one when "
             "SV_getSurfaceDim(SV_getSequenceRT()) changes");
}

void CallChecks::checkFragCoord(const ScriptCall& call, const Shader& shader) {
    if (!IsTrue(call, 2) || WithoutComments(shader.source()).find("gl_FragCoord") == std::string::npos)
        return;
    const auto parameters = Context::Current().LiveEntities<Parameter>();
    auto& uniforms = const_cast<Shader&>(shader).parameters();
    const auto point = std::find_if(uniforms.begin(), uniforms.end(), [&](const Parameter& uniform) {
        return uniform.type == Parameter::POINT2D &&
               std::any_of(parameters.begin(), parameters.end(), [&](const Parameter* parameter) {
                   return parameter->type == Parameter::POINT2D && parameter->name == uniform.name;
               });
    });
    if (point != uniforms.end())
        warn(
            call.line,
            "the shader compares gl_FragCoord with the point \"" + point->name +
                "\" in a flipped pass: gl_FragCoord.y counts from the bottom of the picture, points from the "
                "top; use gl_TexCoord[0].xy times the size instead");
}

void CallChecks::checkOutputExtent(const ScriptCall& call) {
    if (m_Stage != Stage::PreRender)
        return warn(call.line, "SV_setOutputExtent changes the output only in preRender()");
    const double width =
        call.arguments.size() > 0 && call.arguments[0].is_number() ? call.arguments[0].get<double>() : 0;
    const double height =
        call.arguments.size() > 1 && call.arguments[1].is_number() ? call.arguments[1].get<double>() : 0;
    const double most = GLLimits::MaxTextureSize();
    if (width < 0 || height < 0 || width > most || height > most)
        return warn(call.line, "SV_setOutputExtent: the extent must be from 0 to " +
                                   std::to_string(static_cast<long>(most)) + " pixels");
    if (!m_MayGrow && (width > m_Width || height > m_Height))
        warn(call.line,
             "SV_setOutputExtent makes the output larger than the layer, but FLAGS in config.xml lacks 512 "
             "(0x200), so hosts cut it off");
}

} // namespace fxhost
