#include "check/EffectCheck.h"

#include <algorithm>
#include <map>
#include <set>

#include "check/ConfigChecks.h"
#include "check/EffectRun.h"
#include "check/ParameterChecks.h"
#include "check/PictureChecks.h"
#include "check/ShaderChecks.h"
#include "check/StrictGLSL.h"
#include "context/Context.h"
#include "packaging/ScriptScan.h"
#include "utils/Utils.h"

namespace fxhost {

namespace {

// Sizes that effects rarely have in mind; the first frame has no layers.
constexpr CheckFrame Watched(unsigned width, unsigned height, unsigned depth, double time,
                             bool withLayers = true) {
    CheckFrame frame{width, height, depth, time, withLayers};
    frame.findsUnsetUniforms = true;
    return frame;
}
constexpr CheckFrame s_Frames[] = {Watched(64, 48, 8, 0.5, false), Watched(37, 23, 16, 1),
                                   Watched(128, 9, 32, 1.5), Watched(1, 1, 8, 2)};
constexpr CheckFrame s_Small = Watched(16, 16, 8, 2.5);
constexpr CheckFrame s_Reference = {96, 72, 8, 13.0 / 25};
constexpr unsigned s_LeakFrames = 50;
constexpr std::size_t s_MostVariations = 64;

// Limits of the differences between frames that should look alike.
constexpr double s_Same = 1.5 / 255; // one step of 8 bits
constexpr double s_AlikeDepth = 0.2; // dithered pictures are alike only on average
constexpr double s_AlikeResolution = 0.3;

class Checker {
public:
    Checker(const std::string& effect, EffectRun::Listener listener) : m_Run(effect, std::move(listener)) {}

    void run() {
        const bool setUp = !m_Run.failed();
        m_Run.reportFiles();
        checkTexts();
        if (!setUp)
            return;
        checkShaders();
        for (const CheckFrame& frame : s_Frames)
            m_Run.render(frame);
        m_Run.reportFiles(); // files that draw() loads
        checkShaders();
        if (!m_Run.driver().shaderErrors().empty()) // then the engine no longer calls draw()
            return;
        const Picture alone = m_Run.render(s_Reference);
        checkDrawing(alone);
        checkDepth(alone);
        checkResolution(alone);
        runVariations();
        checkLeaks();
        checkRepeatability(alone);
        m_Run.reportUniforms();
        checkOrder();
    }

private:
    void checkTexts() {
        const EffectSource& source = m_Run.source();
        m_Run.report(CheckParameters(source.DisplayPath("fx.js"), m_Run.script(), m_Run.parameters()));
        if (const auto config = source.ReadText("config.xml"))
            m_Run.report(CheckConfig(source.DisplayPath("config.xml"), *config));
    }

    // Each shader once. Shaders that failed to compile have errors already.
    void checkShaders() {
        for (const Shader* const shader : Context::Current().LiveEntities<Shader>()) {
            const bool isFile = !shader->filePath().empty();
            const std::string name = Utils::ToNarrow(isFile ? shader->filePath() : shader->name());
            if (!m_CheckedShaders.insert(name).second)
                continue;
            const auto text = isFile ? m_Run.source().ReadText(name) : shader->source();
            if (isFile && text)
                m_Run.report(CheckShaderSource(m_Run.source().DisplayPath(name), *text));
            if (text && shader->errorText().empty())
                m_Run.report(isFile ? CheckStrictly(m_Run.source().DisplayPath(name), *text)
                                    : checkInline(name, *text));
        }
    }

    // Moves the diagnostics of a shader whose text is in the script to the line of its call.
    std::vector<Diagnostic> checkInline(const std::string& name, const std::string& text) {
        auto found = CheckStrictly(m_Run.source().DisplayPath("fx.js"), text);
        for (Diagnostic& diagnostic : found) {
            diagnostic.text =
                "shader \"" + name + "\", line " + std::to_string(diagnostic.line) + ": " + diagnostic.text;
            diagnostic.line = LineOfInlineShader(m_Run.script(), name);
        }
        return found;
    }

    // Warnings about the picture have the line of draw().
    void warnDraw(const std::string& text) {
        m_Run.warnScript(LineOfWord(m_Run.script(), "function draw"), text);
    }

    Picture checkResult(const Picture& picture) {
        if (HasNonFiniteValue(picture))
            warnDraw("the result has NaN or infinite values at 32 bits per channel; guard divisions, "
                     "logarithms, roots and "
                     "powers in the shaders");
        return picture;
    }

    void checkDrawing(const Picture& picture) {
        if (!m_Run.calls().reachesFrame)
            return warnDraw("draw() draws nothing into SV_getSequenceRT(), so the frame stays transparent");
        if (IsTransparent(picture))
            return warnDraw("the frame is fully transparent, although the layer is not");
        if (m_Run.calls().flips % 2 != 0)
            return;
        CheckFrame marked = s_Reference;
        marked.isMarked = true;
        if (IsMarkUpsideDown(picture, m_Run.render(marked)))
            warnDraw("the frame is upside down; pass true as the third argument of the last SV_renderShader, "
                     "so that the "
                     "picture is flipped an odd number of times");
    }

    void checkDepth(const Picture& picture) {
        for (const unsigned depth : {16u, 32u}) {
            CheckFrame frame = s_Reference;
            frame.depth = depth;
            if (CoarseDifference(picture, checkResult(m_Run.render(frame))) > s_AlikeDepth)
                warnDraw("the picture at " + std::to_string(depth) +
                         " bits per channel differs from that at 8 bits by more than "
                         "rounding; shaders receive 0 to 1 at every depth");
        }
    }

    void checkResolution(const Picture& picture) {
        CheckFrame half = s_Reference;
        half.width /= 2;
        half.height /= 2;
        half.reduction = 0.5;
        if (CoarseDifference(picture, m_Run.render(half)) > s_AlikeResolution)
            warnDraw("the picture changes at half the preview resolution; give lengths in pixels the flag "
                     "SV_ParamFlags.ScaleByWidth or ScaleByHeight");
    }

    // A frame for every entry of every pop-up and both states of every check box.
    void runVariations() {
        std::size_t count = 0;
        for (unsigned i = 0; i < m_Run.parameters().size(); ++i) {
            const Parameter& parameter = m_Run.parameters()[i];
            const bool isSwitch = parameter.type == Parameter::BOOL;
            if (!isSwitch && parameter.type != Parameter::POPUP)
                continue;
            const int first = isSwitch ? 0 : 1;
            const int last = isSwitch ? 1 : static_cast<int>(parameter.choiceCount);
            for (int value = first; value <= last && count < s_MostVariations; ++value, ++count) {
                ParameterSetting setting{i, {}};
                setting.value.SetInt(0, value);
                m_Run.render(s_Small, {setting});
            }
        }
    }

    std::map<const char*, std::size_t> countResources() {
        std::map<const char*, std::size_t> counts;
        m_Run.driver().whileLocked([&] {
            Context& context = Context::Current();
            counts = {{"parameters", context.LiveEntities<Parameter>().size()},
                      {"shaders", context.LiveEntities<Shader>().size()},
                      {"render targets", context.LiveEntities<RenderTarget>().size()},
                      {"textures", context.LiveEntities<Texture>().size()},
                      {"surfaces", context.LiveEntities<Surface>().size()}};
        });
        return counts;
    }

    void checkLeaks() {
        m_Run.render(s_Small);
        const auto before = countResources();
        for (unsigned i = 0; i < s_LeakFrames; ++i)
            m_Run.render(s_Small);
        for (const auto& [type, count] : countResources())
            if (count > before.at(type) + 1)
                warnDraw("draw leaves " + std::to_string(count - before.at(type)) + " " + type +
                         " behind in " + std::to_string(s_LeakFrames) +
                         " frames; keep them between frames or give them to SV_release");
    }

    // The same frame after other frames, and after frames of another instance.
    void checkRepeatability(const Picture& alone) {
        if (FineDifference(alone, m_Run.render(s_Reference)) > s_Same)
            return warnDraw("the frame depends on the frames that were rendered before it; hosts render "
                            "frames in any order, so "
                            "compute it from SV_getTime() and the parameters");
        if (FineDifference(alone, m_Run.renderAfterPreparing(s_Reference, s_Small)) > s_Same)
            return warnDraw("the frame depends on preRender() of another frame; hosts prepare several frames "
                            "before they draw the first, so compute in draw() what draw() needs");
        m_Run.driver().addInstance();
        std::vector<ParameterSetting> other;
        for (unsigned i = 0; i < m_Run.parameters().size(); ++i)
            if (m_Run.parameters()[i].type == Parameter::FLOAT)
                other.push_back({i, m_Run.parameters()[i].max});
        CheckFrame frame = s_Reference;
        frame.time = 3;
        m_Run.render(frame, other);
        m_Run.driver().selectInstance(0);
        if (FineDifference(alone, m_Run.render(s_Reference)) > s_Same)
            warnDraw("the frame depends on another instance of the effect; global variables are shared by "
                     "all instances, so "
                     "do not keep in them what belongs to one layer");
    }

    // Callbacks in the other orders that hosts use, and a second setup().
    void checkOrder() {
        m_Run.driver().updateUI();
        m_Run.driver().updateUI();
        m_Run.driver().restart();
        m_Run.render(s_Small);
        m_Run.reportFiles();
    }

    EffectRun m_Run;
    std::set<std::string> m_CheckedShaders;
};

} // namespace

void CheckEffect(const std::string& effect, const std::function<void(const Diagnostic&)>& report) {
    Checker(effect, report).run();
}

} // namespace fxhost
