#include <cstdio>
#include <filesystem>
#include <memory>

#include "packaging/EffectSource.h"
#include "packaging/Package.h"
#include "tool/Commands.h"
#include "tool/GuardOptions.h"
#include "tool/GuardedCheck.h"
#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

struct PackOptions {
    std::string from, to;
    bool force = false;
    GuardLimits limits; // of the check
};

int Pack(const PackOptions& options) {
    if (fs::is_directory(options.to))
        throw WrongUse(options.to + ": is a folder; a file name such as blob.dat was expected");
    const PackageContents packing = CollectPackage(options.from);
    for (const Diagnostic& finding : packing.findings)
        std::fprintf(stderr, "%s\n", ToText(finding).c_str());
    if (!packing.findings.empty())
        return ExitEffectFailed;
    RequireShippable(options.limits, options.from, "packed", options.force);
    const Bytes package = ToPackage(packing.files);
    WriteFileAtomically(options.to, std::as_bytes(std::span(package)));
    return ExitOk;
}

int Unpack(const PackOptions& options) {
    const Package package = ReadPackage(options.from);
    const fs::path folder(options.to);
    if (fs::exists(folder) && !(fs::is_directory(folder) && fs::is_empty(folder)))
        throw WrongUse(options.to + ": already exists; a new or empty folder was expected");
    // Packages may come from untrusted sources: no file may be written outside the folder.
    for (const auto& [name, bytes] : package.files)
        if (BaseName(name) != name || name.empty() || name == "." || name == "..")
            throw WrongUse(options.from + ": entry \"" + name +
                           "\" is not a plain file name; packages are flat");
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw EffectFailure(options.to, "the folder cannot be made: " + error.message());
    for (const auto& [name, bytes] : package.files)
        WriteFileAtomically(folder / name, std::as_bytes(std::span(bytes)));
    return ExitOk;
}

} // namespace

Command AddPack(CLI::App& tool) {
    const auto options = std::make_shared<PackOptions>();
    CLI::App* app =
        tool.add_subcommand("pack", "Make a package, as shipped in a plug-in, from an effect folder");
    app->add_option("FOLDER", options->from, "Folder that holds fx.js")->required();
    app->add_option("-o,--output", options->to, "Package to write")->required()->type_name("FILE");
    app->add_flag("--force", options->force, "Pack an effect in which `fxhost check` finds errors, too");
    AddGuardOptions(*app, options->limits);
    app->footer("Hidden files and packages in the folder are left out; equal folders give equal packages.\n\n"
                "Example:\n  fxhost pack effects/blur -o blob.dat");
    return {app, [options] { return Pack(*options); }};
}

Command AddUnpack(CLI::App& tool) {
    const auto options = std::make_shared<PackOptions>();
    CLI::App* app = tool.add_subcommand("unpack", "Extract the files of a package into a folder");
    app->add_option("PACKAGE", options->from, "Package file")->required();
    app->add_option("-o,--output", options->to, "Folder to make")->required()->type_name("FOLDER");
    app->footer("Example:\n  fxhost unpack blob.dat -o blur");
    return {app, [options] { return Unpack(*options); }};
}

} // namespace fxhost
