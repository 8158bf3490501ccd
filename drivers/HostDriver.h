#pragma once

#include <memory>
#include <string>
#include <vector>

#include "packaging/EffectSource.h"
#include "stricthost/StrictHost.h"
#include "toolkit/FrameRenderer.h"

namespace fxhost {

// How the tool plays the editing program.
struct HostSettings {
    stricthost::Personality personality = stricthost::Personality::AfterEffects;
    unsigned across = 1, down = 1; // preview resolution: one pixel for so many
    double pixelAspect = 1;        // width / height of a pixel
    std::string bundle;            // a .plugin to load; empty: the plug-in linked into the tool
};

// Renders an effect through the editing programs' command protocol, with one instance of it. One object at a
// time, on one thread.
class HostDriver final : public FrameRenderer {
public:
    // Sets the plug-in up, which runs the effect's script. `source` is null for a bundle, and must otherwise
    // outlive the driver. Throws WrongUse for a bundle that cannot be loaded, EffectFailure when a set-up
    // command fails.
    HostDriver(const HostSettings& settings, const EffectSource* source);
    ~HostDriver() override;
    HostDriver(const HostDriver&) = delete;
    HostDriver& operator=(const HostDriver&) = delete;

    // Of a bundle the host knows labels only; they then serve as names.
    std::vector<Parameter> parameters() override;
    Picture render(const FrameInputs& request) override;

    // Ends the plug-in and tells what it did against the rules of its host.
    const std::vector<std::string>& finish();

private:
    struct Row {
        Parameter parameter;
        std::size_t hostIndex; // 0: the host shows no control for it
    };

    void setUp(const EffectSource* source);
    void listLinkedParameters();
    void listPublishedParameters();
    stricthost::Instance& instanceFor(const Picture& full);
    void setValues(stricthost::Instance& instance, const FrameInputs& request);

    HostSettings m_Settings;
    std::unique_ptr<stricthost::PluginModule> m_Module;
    std::unique_ptr<stricthost::StrictHost> m_Host;
    std::vector<Row> m_Rows;
    stricthost::Instance* m_Instance = nullptr; // the host's; made for the first picture
};

} // namespace fxhost
