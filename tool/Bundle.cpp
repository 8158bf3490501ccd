#include "packaging/Bundle.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <unistd.h>

#include "packaging/InfoPlist.h"
#include "packaging/Package.h"
#include "packaging/Pipl.h"
#include "packaging/TargetSystem.h"
#include "stricthost/StrictHost.h"
#include "tool/Commands.h"
#include "tool/GuardOptions.h"
#include "tool/GuardedCheck.h"
#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

constexpr char s_Category[] = "Shader Effects";

struct BundleOptions {
    BundleParts parts;
    bool pipl = false;
    GuardLimits limits; // of the check
};

// A folder that is deleted together with the object.
class TemporaryFolder {
public:
    TemporaryFolder() : m_Path((fs::temp_directory_path() / "fxhost-XXXXXX").string()) {
        if (!mkdtemp(m_Path.data()))
            throw EffectFailure(m_Path, "cannot create a temporary folder");
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(m_Path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return m_Path; }

private:
    std::string m_Path;
};

// The version and flags that the module of this bundle returns from global setup.
PiplInfo AskModule(const fs::path& bundle) {
    try {
        stricthost::StrictHost host(bundle, stricthost::Options{});
        host.GlobalSetup();
        PiplInfo info;
        info.version = host.Version();
        info.outFlags = static_cast<std::uint32_t>(host.OutFlags());
        info.outFlags2 = static_cast<std::uint32_t>(host.OutFlags2());
        return info;
    } catch (const std::runtime_error& error) {
        throw EffectFailure(bundle.string(), std::string("the bundle does not start: ") + error.what());
    }
}

// A module for another system cannot be started here. This system's module returns the same values, because
// they depend on config.xml alone.
PiplInfo AskThisSystemsModule(const std::string& effect) {
    const TemporaryFolder folder;
    BundleParts parts;
    parts.effect = effect;
    parts.bundle = folder.path() + "/Probe.plugin";
    return AskModule(WriteBundle(parts).path);
}

// The property list must contain exactly the version and flags that the module returns from global setup.
void AddPropertyList(const BundleOptions& options, const WrittenBundle& bundle) {
    const bool isForeign = &FindTargetSystem(options.parts.target) != &FindTargetSystem({});
    PiplInfo info = isForeign ? AskThisSystemsModule(options.parts.effect) : AskModule(bundle.path);
    info.name = bundle.info.name;
    info.category = s_Category;
    info.matchName = MatchNameOf(bundle.info.effectId);
    info.entry = "EntryPointFunc";
    const Bytes resource = PiplResourceFile(info);
    WriteFileAtomically(bundle.path / "Contents/Resources" / (bundle.info.executable + ".rsrc"),
                        std::as_bytes(std::span(resource)));
}

int MakeBundle(const BundleOptions& options) {
    RequireShippable(options.limits, options.parts.effect, "bundled", options.parts.replace);
    const WrittenBundle bundle = WriteBundle(options.parts);
    if (options.pipl || FindTargetSystem(options.parts.target).needsPropertyList)
        AddPropertyList(options, bundle);
    std::printf("%s\n", bundle.path.c_str());
    return ExitOk;
}

} // namespace

Command AddBundle(CLI::App& tool) {
    const auto options = std::make_shared<BundleOptions>();
    BundleParts& parts = options->parts;
    CLI::App* app =
        tool.add_subcommand("bundle", "Make a plug-in bundle from an effect folder, without a compiler");
    app->add_option("FOLDER", parts.effect, "Folder that holds fx.js")->required();
    app->add_option("-o,--output", parts.bundle, "Bundle to create")
        ->required()
        ->type_name("NAME.plugin|DIR");
    app->add_option("--module", parts.module,
                    "Plug-in module; the one that is installed with this tool by default")
        ->type_name("FILE");
    app->add_option("--target", parts.target, "System that will load the bundle; this one by default")
        ->type_name("macos|linux");
    app->add_flag("--force", parts.replace,
                  "Replace an existing bundle, and bundle an effect in which `fxhost check` finds errors");
    app->add_flag(
        "--pipl", options->pipl,
        "Add the property list (PiPL) that bundles for macOS always get; this starts the module once");
    app->footer("Examples:\n  fxhost bundle effects/blur -o Blur.plugin\n"
                "  fxhost bundle effects/blur -o plugins/ --target macos\n"
                "  fxhost render --plugin Blur.plugin -i in.png -o out.png");
    AddGuardOptions(*app, options->limits);
    return {app, [options] { return MakeBundle(*options); }};
}

} // namespace fxhost
