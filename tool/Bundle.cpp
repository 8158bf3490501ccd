#include "packaging/Bundle.h"

#include <filesystem>
#include <memory>

#include "packaging/InfoPlist.h"
#include "packaging/Package.h"
#include "packaging/Pipl.h"
#include "stricthost/StrictHost.h"
#include "tool/Commands.h"
#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

constexpr char s_Category[] = "Shader Effects";

struct BundleOptions {
    BundleParts parts;
    bool pipl = false;
};

// The property list must contain the version and flags that the module returns from global setup.
void AddPropertyList(const std::filesystem::path& bundle) {
    PiplInfo info;
    info.name = bundle.stem();
    info.category = s_Category;
    info.matchName = IdentifierOf(info.name);
    info.entry = "EntryPointFunc";
    try {
        stricthost::StrictHost host(bundle, stricthost::Options{});
        host.GlobalSetup();
        info.version = host.Version();
        info.outFlags = static_cast<std::uint32_t>(host.OutFlags());
        info.outFlags2 = static_cast<std::uint32_t>(host.OutFlags2());
    } catch (const std::runtime_error& error) {
        throw EffectFailure(bundle.string(), std::string("the bundle does not start: ") + error.what());
    }
    const Bytes resource = PiplResourceFile(info);
    WriteFileAtomically(bundle / "Contents/Resources" / (info.name + ".rsrc"),
                        std::as_bytes(std::span(resource)));
}

int MakeBundle(const BundleOptions& options) {
    const std::filesystem::path bundle = WriteBundle(options.parts);
    if (options.pipl)
        AddPropertyList(bundle);
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
        ->type_name("DIR/NAME.plugin");
    app->add_option("--module", parts.module,
                    "Plug-in module; the one that is installed with this tool by default")
        ->type_name("FILE");
    app->add_flag("--force", parts.replace, "Replace an existing bundle");
    app->add_flag("--pipl", options->pipl,
                  "Add the property list for After Effects on macOS; this starts the module once");
    app->footer("Examples:\n  fxhost bundle effects/blur -o Blur.plugin\n"
                "  fxhost render --plugin Blur.plugin -i in.png -o out.png");
    return {app, [options] { return MakeBundle(*options); }};
}

} // namespace fxhost
