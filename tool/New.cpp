#include <cstdio>
#include <filesystem>
#include <memory>

#include "packaging/EffectTemplate.h"
#include "packaging/Package.h"
#include "tool/Commands.h"
#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

int New(const std::string& folder) {
    fs::path path(folder);
    if (!path.has_filename())
        path = path.parent_path();
    const std::string name = path.filename().string();
    const bool printable = name.find_first_of("\n\r") == std::string::npos;
    if (name.empty() || name == "." || name == ".." || !printable)
        throw WrongUse("new " + folder + ": the name of a folder to make was expected");
    if (fs::exists(path))
        throw WrongUse(folder + ": already exists; choose another name");
    std::error_code error;
    if (!fs::create_directories(path, error))
        throw EffectFailure(folder, "the folder cannot be made: " + error.message());
    for (const auto& [file, bytes] : TemplateEffect(name))
        WriteFileAtomically(path / file, std::as_bytes(std::span(bytes)));
    std::printf("Created %s. Try it: fxhost render %s -i IMAGE -o out.png\n", path.c_str(), path.c_str());
    return ExitOk;
}

} // namespace

Command AddNew(CLI::App& tool) {
    const auto folder = std::make_shared<std::string>();
    CLI::App* app = tool.add_subcommand("new", "Create an effect folder from a template");
    app->add_option("NAME", *folder, "Folder to create; its last component becomes the name of the effect")
        ->required();
    app->footer("Example:\n  fxhost new effects/Dusk");
    return {app, [folder] { return New(*folder); }};
}

} // namespace fxhost
