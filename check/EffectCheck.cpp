#include "check/EffectCheck.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "check/ParameterChecks.h"
#include "check/ShaderChecks.h"
#include "check/UniformChecks.h"
#include "context/Context.h"
#include "drivers/EffectDiagnostics.h"
#include "drivers/EngineDriver.h"
#include "drivers/ScriptErrorCollector.h"
#include "guard/Stage.h"
#include "packaging/ScriptScan.h"
#include "parameters/ParameterTraits.h"
#include "utils/Utils.h"

namespace fxhost {

namespace {

struct FrameKind {
    unsigned width, height, depth;
};
constexpr FrameKind s_Frames[] = {{64, 48, 8}, {37, 23, 16}, {128, 9, 32}, {1, 1, 8}};
constexpr FrameKind s_Small = {16, 16, 8};
constexpr unsigned s_LeakFrames = 50;
constexpr std::size_t s_MostVariations = 64;

// A picture in which every channel of every pixel differs from its neighbours.
Picture TestPicture(const FrameKind& kind) {
    Picture picture(kind.width, kind.height, kind.depth);
    const std::size_t channels = std::size_t{kind.width} * kind.height * 4;
    for (std::size_t i = 0; i < channels; ++i) {
        if (kind.depth == 8)
            picture.bytes[i] = static_cast<std::uint8_t>(i * 37);
        else if (kind.depth == 16)
            reinterpret_cast<std::uint16_t*>(picture.bytes.data())[i] =
                static_cast<std::uint16_t>(i * 997 % 32769);
        else
            reinterpret_cast<float*>(picture.bytes.data())[i] = static_cast<float>(i % 17) / 16.0f;
    }
    return picture;
}

class Checker {
public:
    Checker(const std::string& effect, const std::function<void(const Diagnostic&)>& listener)
        : m_Listener(listener), m_Source(EffectSource::Open(effect)), m_ScriptErrors(m_Source),
          m_Driver(m_Source), m_Uniforms(m_Source), m_Parameters(m_Driver.parameters()) {}

    void run() {
        reportScript();
        const bool setUp = !m_Failed;
        reportFiles();
        checkTexts();
        if (!setUp)
            return;
        runFrames();
        reportFiles();                        // files that draw() loads
        if (!m_Driver.shaderErrors().empty()) // then the engine no longer calls draw()
            return;
        runVariations();
        checkLeaks();
        m_Driver.whileLocked([&] { report(m_Uniforms.findings(m_Parameters)); });
    }

private:
    void checkTexts() {
        const std::string script = m_Source.ReadText("fx.js").value_or("");
        report(CheckParameters(m_Source.DisplayPath("fx.js"), script, m_Parameters));
        std::vector<std::string> files;
        for (const Shader* shader : Context::Current().LiveEntities<Shader>())
            if (!shader->filePath().empty())
                files.push_back(Utils::ToNarrow(shader->filePath()));
        std::sort(files.begin(), files.end());
        files.erase(std::unique(files.begin(), files.end()), files.end());
        for (const auto& file : files)
            if (const auto text = m_Source.ReadText(file))
                report(CheckShaderSource(m_Source.DisplayPath(file), *text));
    }

    void frame(const FrameKind& kind, const std::vector<ParameterSetting>& settings = {}) {
        ReportFrame(m_Frame++);
        FrameInputs request;
        request.input = TestPicture(kind);
        request.time = 0.5 * static_cast<double>(m_Frame);
        request.settings = settings;
        if (m_Frame > 1) // layers are empty in the first frame
            for (unsigned i = 0; i < m_Parameters.size(); ++i)
                if (m_Parameters[i].type == Parameter::LAYER)
                    request.layers.push_back({i, TestPicture(kind)});
        m_Driver.updateUI();
        m_Driver.whileLocked([&] { m_Uniforms.beforeFrame(); });
        m_Driver.render(request);
        m_Driver.whileLocked([&] { m_Uniforms.afterFrame(); });
        reportScript();
    }

    void runFrames() {
        for (const FrameKind& kind : s_Frames)
            frame(kind);
    }

    // Renders a frame for every entry of every pop-up and both states of every check box. All other
    // parameters keep their declared values.
    void runVariations() {
        std::size_t count = 0;
        for (unsigned i = 0; i < m_Parameters.size(); ++i) {
            const Parameter& parameter = m_Parameters[i];
            const ParameterTraits& traits = TraitsOf(parameter.type);
            if (!traits.isInteger())
                continue;
            const bool isSwitch = !traits.hasChoices();
            const int first = isSwitch ? 0 : 1;
            const int last = isSwitch ? 1 : static_cast<int>(parameter.choiceCount);
            for (int value = first; value <= last && count < s_MostVariations; ++value, ++count) {
                ParameterSetting setting{i, {}};
                setting.value.SetInt(0, value);
                frame(s_Small, {setting});
            }
            frame(s_Small, {{i, parameter.value}}); // back to the declared value
        }
    }

    std::map<const char*, std::size_t> countResources() {
        std::map<const char*, std::size_t> counts;
        m_Driver.whileLocked([&] {
            Context& registry = Context::Current();
            counts = {{"parameters", registry.LiveEntities<Parameter>().size()},
                      {"shaders", registry.LiveEntities<Shader>().size()},
                      {"render targets", registry.LiveEntities<RenderTarget>().size()},
                      {"textures", registry.LiveEntities<Texture>().size()},
                      {"surfaces", registry.LiveEntities<Surface>().size()}};
        });
        return counts;
    }

    void checkLeaks() {
        frame(s_Small);
        const auto before = countResources();
        for (unsigned i = 0; i < s_LeakFrames; ++i)
            frame(s_Small);
        const auto after = countResources();
        const int line = LineOfWord(m_Source.ReadText("fx.js").value_or(""), "function draw");
        for (const auto& [type, count] : after)
            if (count > before.at(type) + 1)
                report({{m_Source.DisplayPath("fx.js"),
                         line,
                         Severity::Warning,
                         "draw leaves " + std::to_string(count - before.at(type)) + " " + type +
                             " behind in " + std::to_string(s_LeakFrames) +
                             " frames; keep them between frames or give them to SV_release",
                         {}}});
    }

    void reportScript() { report(m_ScriptErrors.take()); }
    void reportFiles() {
        report(ShaderFindings(m_Driver.shaderErrors(), m_Source));
        report(MissingFileFindings(m_Source));
    }
    // Passes each diagnostic to the listener once.
    void report(const std::vector<Diagnostic>& findings) {
        for (const Diagnostic& finding : findings) {
            if (std::find(m_Reported.begin(), m_Reported.end(), finding) != m_Reported.end())
                continue;
            m_Reported.push_back(finding);
            m_Failed |= finding.severity == Severity::Error;
            m_Listener(finding);
        }
    }

    const std::function<void(const Diagnostic&)>& m_Listener;
    EffectSource m_Source;
    ScriptErrorCollector m_ScriptErrors;
    EngineDriver m_Driver;
    UniformChecks m_Uniforms;
    std::vector<Parameter> m_Parameters;
    std::vector<Diagnostic> m_Reported;
    long m_Frame = 0;
    bool m_Failed = false;
};

} // namespace

void CheckEffect(const std::string& effect, const std::function<void(const Diagnostic&)>& report) {
    Checker(effect, report).run();
}

} // namespace fxhost
