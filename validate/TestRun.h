#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pictures/Picture.h"
#include "stricthost/StrictHost.h"
#include "validate/HostSystem.h"
#include "validate/SharedReport.h"

namespace validate {

// What a test receives: the plug-in, a seed, and the place for its findings. Lives in the process of the
// test. One at a time.
class TestRun {
public:
    // path: a bundle NAME.plugin or a bare module. The report must outlive this object.
    TestRun(std::string path, std::uint32_t seed, SharedReport& report, const HostSystem& system,
            std::size_t shuffledSteps);
    TestRun(const TestRun&) = delete;
    TestRun& operator=(const TestRun&) = delete;

    const std::string& Path() const { return m_Path; }
    std::uint32_t Seed() const { return m_Seed; }
    std::size_t ShuffledStepCount() const { return m_ShuffledSteps; }
    // Adds a finding. Any thread.
    void Fail(const std::string& text) { m_Report.AddFinding(text); }

    // Entry point of the plug-in, which logs every command. Loads the module when it is not loaded. The
    // module stays loaded until the process ends, unless Unload is called.
    PF_FilterProc Entry();
    // Call it while no host of the plug-in exists.
    void Unload();
    // True when hosts can report a bundle reference instead of a path (quirk "bundle-reference").
    bool HasBundleReference() const { return m_Bundle != nullptr; }
    // Host options with the plug-in's path filled in.
    stricthost::Options OptionsFor(stricthost::Personality personality) const;
    // Personalities that run the plug-in differently: smart render only when it is supported.
    std::vector<stricthost::Personality> Personalities();
    // Depths at which this personality renders with the plug-in, as its flags and formats say: some of 8,
    // 16, 32.
    std::vector<unsigned> Depths(stricthost::Personality personality);

private:
    struct Abilities {
        bool smart = false, deep = false, isFloat = false;
        std::vector<unsigned> premiereDepths;
    };
    const Abilities& Find();

    std::string m_Path;
    std::uint32_t m_Seed;
    SharedReport& m_Report;
    HostSystem m_System;
    std::size_t m_ShuffledSteps;
    std::shared_ptr<void> m_Bundle; // a CFBundleRef
    stricthost::PluginModule* m_Module = nullptr;
    std::unique_ptr<Abilities> m_Abilities;
};

// Name of a personality in findings.
const char* NameOf(stricthost::Personality personality);

// Channels of any value within the range of the depth; the same picture for the same arguments.
fxhost::Picture Noise(unsigned width, unsigned height, unsigned depth, std::uint32_t seed = 1);

} // namespace validate
