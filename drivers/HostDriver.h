#pragma once

#include <memory>
#include <string>
#include <vector>

#include "packaging/EffectSource.h"
#include "stricthost/StrictHost.h"
#include "toolkit/FrameRenderer.h"

namespace fxhost {

// How the tool emulates the editing program.
struct HostSettings {
    stricthost::Personality personality = stricthost::Personality::AfterEffects;
    unsigned across = 1, down = 1; // preview resolution: layer pixels per rendered pixel
    double pixelAspect = 1;        // width / height of a pixel
    stricthost::Quirks quirks;     // behaviour of real programs that the emulated one shows
    // Accepts a count that includes parameters of types that hosts do not know.
    bool allowParamGap = false;
    std::string bundle; // a .plugin to load; empty selects the plug-in that is linked into the tool
};

// Renders an effect through the command protocol of the editing programs, with one instance of the effect.
// Only one object may exist at a time. All calls come from one thread.
class HostDriver final : public FrameRenderer {
public:
    // Sets up the plug-in, which runs the effect's script. `source` is null for a bundle; otherwise it must
    // outlive the driver. Throws WrongUse when a bundle cannot be loaded, and EffectFailure when a setup
    // command fails. `transform`: see EffectSource::Select.
    HostDriver(const HostSettings& settings, const EffectSource* source,
               const EffectSource::ScriptTransform& transform = nullptr);
    ~HostDriver() override;
    HostDriver(const HostDriver&) = delete;
    HostDriver& operator=(const HostDriver&) = delete;

    // For a bundle the host knows only labels, which are used as names too.
    std::vector<Parameter> parameters() override;
    Picture render(const FrameInputs& request) override;

    // True when the host sends frames without instance data, because the plug-in's flags ask for threaded
    // rendering. The plug-in of this project then passes the layer through.
    bool withholdsData() const;

    // Shuts down the plug-in and returns its violations of the protocol.
    const std::vector<std::string>& finish();

private:
    struct Row {
        Parameter parameter;
        std::size_t hostIndex; // 0 when the host shows no control for it
    };

    void setUp(const EffectSource* source);
    void listLinkedParameters();
    void listPublishedParameters();
    stricthost::Instance& instanceFor(const Picture& full);
    void setValues(stricthost::Instance& instance, const FrameInputs& request);

    HostSettings m_Settings;
    std::unique_ptr<stricthost::PluginModule> m_Module;
    std::shared_ptr<void> m_Bundle; // a CFBundleRef; outlives the host, which passes it to the plug-in
    std::unique_ptr<stricthost::StrictHost> m_Host;
    std::vector<Row> m_Rows;
    stricthost::Instance* m_Instance = nullptr; // belongs to the host; created for the first picture
};

} // namespace fxhost
