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

// An emulated editing program for one plug-in, which records every violation of the plug-in interface's
// rules. The order of calls is GlobalSetup, ParamsSetup, instances and their commands, Finish; any other
// order throws std::logic_error. Set-up and Finish belong to one thread; several threads may create and use
// instances at once.
class StrictHost {
public:
    // Drives an entry point that is linked into the program.
    StrictHost(PF_FilterProc entry, Options options);
    // Loads NAME.plugin and unloads it at the end. Throws std::runtime_error, naming the file, for a bundle
    // that cannot be loaded.
    StrictHost(const std::filesystem::path& bundle, Options options);
    ~StrictHost(); // calls Finish
    StrictHost(const StrictHost&) = delete;
    StrictHost& operator=(const StrictHost&) = delete;

    // Each throws CommandError when the plug-in returns an error.
    void GlobalSetup();
    void ParamsSetup();
    // Returns the text of the plug-in's about box.
    std::string About();

    // Published parameters; index 0 is the input layer. Valid after ParamsSetup.
    const std::vector<PublishedParam>& Params() const { return m_Core.params.All(); }
    // Valid after GlobalSetup: my_version, packed as by PF_VERSION, and the capability flags.
    A_u_long Version() const { return m_Core.version; }
    PF_OutFlags OutFlags() const { return m_Core.outFlags; }
    PF_OutFlags2 OutFlags2() const { return m_Core.outFlags2; }
    // True when frames carry no sequence data: the quirk "null-render-data" with the plug-in's flags.
    bool WithholdsData() const { return m_Core.WithholdsData(); }
    // Pixel formats that the plug-in declared to Premiere Pro, in its order.
    const std::vector<std::uint32_t>& PixelFormats() const { return m_Core.formats; }

    // Applies the effect to a layer of the given size in pixels, which determines the defaults of points. The
    // host owns the instance for its own lifetime. Throws CommandError.
    Instance& NewInstance(A_long width = 640, A_long height = 360);
    // The same from the bytes of a saved instance. Null: a project that stored no data.
    Instance& OpenInstance(const std::vector<char>* flat, A_long width = 640, A_long height = 360);

    // Memory that the host itself keeps for handles, disposed ones included, in bytes.
    std::size_t HandleBytes() const { return m_Core.handles.TotalBytes(); }
    // Number of interruptible callbacks in the last frame (see Options::interruptAt), when one thread
    // renders.
    unsigned LastFrameCallbacks() const { return m_Core.FrameCallbacks(); }

    // Sets down the remaining instances and the plug-in, and looks for what was not given back. Errors of the
    // set-down commands become violations. Further calls do nothing.
    void Finish();
    // The violations in the order of their first occurrence, each once. Read it while no command runs;
    // complete after Finish.
    const std::vector<std::string>& Violations() const { return m_Core.violations.Texts(); }

private:
    friend class Instance;
    enum class Stage { Loaded, GlobalsSetUp, Ready, Finished };
    Instance& AddInstance(A_long width, A_long height);
    void Require(Stage stage, const char* what) const;
    void SendGlobalSetup();
    void CheckFlags();
    void FinishInstances();

    std::unique_ptr<PluginModule> m_Module; // destroyed last
    HostCore m_Core;
    Stage m_Stage = Stage::Loaded;
    std::mutex m_Mutex; // guards m_Instances
    std::vector<std::unique_ptr<Instance>> m_Instances;
};

} // namespace stricthost
