#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/Options.h"
#include "stricthost/PluginModule.h"

namespace stricthost {

// An editing host for one plug-in that notes everything the plug-in does against the rules. The order is
// GlobalSetup, ParamsSetup, instances and their commands, Finish; std::logic_error for another one. Setting
// up and finishing belong to one thread; instances can be made and used by several threads at once.
class StrictHost {
public:
    // Drives an entry point that is linked into the program.
    StrictHost(PF_FilterProc entry, Options options);
    // Loads NAME.plugin and unloads it at the end. Throws std::runtime_error for a bundle that cannot be
    // loaded.
    StrictHost(const std::filesystem::path& bundle, Options options);
    ~StrictHost(); // finishes
    StrictHost(const StrictHost&) = delete;
    StrictHost& operator=(const StrictHost&) = delete;

    // Each throws CommandError when the plug-in gives an error.
    void GlobalSetup();
    void ParamsSetup();
    // The text of the plug-in's about box.
    std::string About();

    // As published; index 0 is the input layer. Valid after ParamsSetup.
    const std::vector<PublishedParam>& Params() const { return m_Core.params.All(); }
    A_u_long Version() const { return m_Core.version; } // my_version, as PF_VERSION packs it
    PF_OutFlags OutFlags() const { return m_Core.outFlags; }
    PF_OutFlags2 OutFlags2() const { return m_Core.outFlags2; }
    // The pixel formats that the plug-in declared to Premiere Pro, in its order.
    const std::vector<std::uint32_t>& PixelFormats() const { return m_Core.formats; }

    // Applies the effect to a layer of the given size in pixels, which gives points their default values. The
    // instance belongs to the host and lives as long. Throws CommandError.
    Instance& NewInstance(A_long width = 640, A_long height = 360);
    // The same from the bytes that an instance was saved as; null: a project without any.
    Instance& OpenInstance(const std::vector<char>* flat, A_long width = 640, A_long height = 360);

    // Sets down instances that are left and the plug-in, and looks for what was not given back. Errors of the
    // set-down commands count as violations. Further calls do nothing.
    void Finish();
    // What the plug-in did against the rules, in order and each once. Read it while no command runs; complete
    // after Finish.
    const std::vector<std::string>& Violations() const { return m_Core.violations.Texts(); }

private:
    friend class Instance;
    enum class Stage { Loaded, GlobalsSetUp, Ready, Finished };
    Instance& AddInstance(A_long width, A_long height);
    void Require(Stage stage, const char* what) const;
    void CheckFlags();
    void FinishInstances();

    std::unique_ptr<PluginModule> m_Module; // goes last
    HostCore m_Core;
    Stage m_Stage = Stage::Loaded;
    std::mutex m_Mutex;
    std::vector<std::unique_ptr<Instance>> m_Instances;
};

} // namespace stricthost
