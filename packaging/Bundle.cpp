#include "packaging/Bundle.h"

#include <cstdio>
#include <filesystem>

#include "packaging/InfoPlist.h"
#include "packaging/Package.h"
#include "toolkit/AtomicFile.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

constexpr char s_Extension[] = ".plugin";
constexpr char s_PackageInfo[] = "eFKTFXTC"; // type and creator

void WriteText(const fs::path& path, const std::string& text) {
    WriteFileAtomically(path, std::as_bytes(std::span(text)));
}

// The module beside this tool: in its build folder, or in lib/shaderfx of where both were installed.
fs::path FindModule(const std::string& given) {
    if (!given.empty())
        return given;
    std::error_code error;
    const fs::path tool = fs::read_symlink("/proc/self/exe", error);
    const fs::path folder = tool.parent_path();
    for (const fs::path& candidate :
         {folder / "../plugin/shaderfx.so", folder / "../lib/shaderfx/shaderfx.so", fs::path(FX_MODULE_PATH)})
        if (fs::exists(candidate))
            return candidate;
    throw EffectFailure("the plug-in module shaderfx.so is not beside this tool; name it with --module");
}

fs::path RequireTarget(const BundleParts& parts) {
    const fs::path target = fs::path(parts.bundle).lexically_normal();
    const fs::path bundle = target.has_filename() ? target : target.parent_path();
    if (bundle.extension() != s_Extension || bundle.stem().empty())
        throw WrongUse("--output " + parts.bundle + ": a name that ends in .plugin was expected");
    if (fs::exists(bundle) && !parts.replace)
        throw WrongUse("--output " + parts.bundle + ": already exists; --force replaces it");
    return bundle;
}

// The text of a top-level element of config.xml, as the plug-in reads it; empty when there is no such
// element.
std::string ConfigValue(const FileMap& files, const std::string& key) {
    const auto config = files.find("config.xml");
    if (config == files.end())
        return {};
    const std::string text(config->second.begin(), config->second.end());
    const auto open = text.find("<" + key + ">");
    const auto close = text.find("</" + key + ">");
    if (open == std::string::npos || close == std::string::npos || close < open)
        return {};
    return text.substr(open + key.size() + 2, close - open - key.size() - 2);
}

BundleInfo Describe(const FileMap& files, const std::string& name) {
    const auto number = [&](const char* key) {
        const std::string text = ConfigValue(files, key);
        return text.empty() ? std::string("0") : text;
    };
    const std::string shown = ConfigValue(files, "FXNAME");
    return {name, shown.empty() ? name : shown, IdentifierOf(name),
            number("MAJOR_VERSION") + "." + number("MINOR_VERSION") + "." + number("BUILD_VERSION")};
}

} // namespace

const char* ModuleFolder() {
    return FX_MODULE_FOLDER;
}

fs::path WriteBundle(const BundleParts& parts) {
    const fs::path bundle = RequireTarget(parts);
    const std::string name = bundle.stem();
    const PackageContents packing = CollectPackage(parts.effect);
    for (const Diagnostic& finding : packing.findings)
        std::fprintf(stderr, "%s\n", ToText(finding).c_str());
    if (!packing.findings.empty())
        throw EffectFailure(parts.effect, "the effect cannot be bundled as it is");
    const fs::path module = FindModule(parts.module);
    try {
        const AtomicFile staged(bundle);
        const fs::path contents = staged.unfinished() / "Contents";
        fs::create_directories(contents / ModuleFolder());
        fs::create_directories(contents / "Resources");
        fs::copy_file(module, contents / ModuleFolder() / name);
        WriteText(contents / "Info.plist", InfoPlist(Describe(packing.files, name)));
        WriteText(contents / "PkgInfo", s_PackageInfo);
        const Bytes package = ToPackage(packing.files);
        WriteFileAtomically(contents / "Resources/blob.dat", std::as_bytes(std::span(package)));
        fs::remove_all(bundle);
        staged.commit();
        return bundle;
    } catch (const fs::filesystem_error& error) {
        throw EffectFailure(parts.bundle, error.code().message() + " (" + error.path1().string() + ")");
    }
}

} // namespace fxhost
