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

struct NewOptions {
    std::string folder;
    std::string kind = EffectTemplates().front().name;
};

std::vector<std::string> TemplateNames() {
    std::vector<std::string> names;
    for (const EffectTemplate& kind : EffectTemplates())
        names.emplace_back(kind.name);
    return names;
}

std::string TemplateHelp() {
    std::string text = "Templates:\n";
    for (const EffectTemplate& kind : EffectTemplates())
        text += "  " + std::string(kind.name) + ": " + kind.description + "\n";
    return text;
}

int New(const NewOptions& options) {
    const std::string& folder = options.folder;
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
    for (const auto& [file, bytes] : MakeEffect(name, options.kind))
        WriteFileAtomically(path / file, std::as_bytes(std::span(bytes)));
    std::printf("Created %s. Try it: fxhost render %s -i IMAGE -o out.png\n", path.c_str(), path.c_str());
    return ExitOk;
}

} // namespace

Command AddNew(CLI::App& tool) {
    const auto options = std::make_shared<NewOptions>();
    CLI::App* app = tool.add_subcommand("new", "Create an effect folder from a template");
    app->add_option("NAME", options->folder,
                    "Folder to create; its last component becomes the name of the effect")
        ->required();
    app->add_option("--template", options->kind, "Kind of effect")
        ->check(CLI::IsMember(TemplateNames()))
        ->capture_default_str()
        ->type_name("KIND");
    app->footer(TemplateHelp() + "\nExample:\n  fxhost new effects/Dusk --template generator");
    return {app, [options] { return New(*options); }};
}

} // namespace fxhost
