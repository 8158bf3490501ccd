#include "packaging/Bundle.h"

#include <cstdio>
#include <filesystem>

#include "packaging/Package.h"
#include "packaging/TargetSystem.h"
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

// The bundle's own path: --output itself, or in that folder a bundle with the name of the effect.
fs::path BundlePath(const std::string& output, const FileMap& files) {
    const fs::path given = fs::path(output).lexically_normal();
    const fs::path path = given.has_filename() ? given : given.parent_path();
    if (path.extension() == s_Extension && !path.stem().empty())
        return path;
    const std::string name = ConfigValue(files, "FXNAME");
    if ((given.has_filename() && !fs::is_directory(given)) || name.empty() ||
        name.find('/') != std::string::npos)
        throw WrongUse("--output " + output +
                       ": a name that ends in .plugin was expected, or a folder and an FXNAME in "
                       "config.xml that can be a file name");
    return path / (name + s_Extension);
}

BundleInfo Describe(const FileMap& files, const std::string& name) {
    const auto number = [&](const char* key) {
        const std::string text = ConfigValue(files, key);
        return text.empty() ? std::string("0") : text;
    };
    const auto textOr = [&](const char* key, const std::string& otherwise) {
        const std::string text = ConfigValue(files, key);
        return text.empty() ? otherwise : text;
    };
    const std::string effectId = textOr("AGEP_ID", name);
    return {name, textOr("FXNAME", name), IdentifierOf(effectId),
            number("MAJOR_VERSION") + "." + number("MINOR_VERSION") + "." + number("BUILD_VERSION"),
            effectId};
}

} // namespace

WrittenBundle WriteBundle(const BundleParts& parts) {
    const PackageContents packing = CollectPackage(parts.effect);
    for (const Diagnostic& finding : packing.findings)
        std::fprintf(stderr, "%s\n", ToText(finding).c_str());
    if (!packing.findings.empty())
        throw EffectFailure(parts.effect, "the effect cannot be bundled as it is");
    const fs::path bundle = BundlePath(parts.bundle, packing.files);
    if (fs::exists(bundle) && !parts.replace)
        throw WrongUse(bundle.string() + ": already exists; --force replaces it");
    const TargetSystem& system = FindTargetSystem(parts.target);
    const fs::path module = parts.module.empty() ? FindModule(system) : fs::path(parts.module);
    const BundleInfo info = Describe(packing.files, bundle.stem());
    try {
        if (bundle.has_parent_path())
            fs::create_directories(bundle.parent_path());
        const AtomicFile staged(bundle);
        const fs::path contents = staged.unfinished() / "Contents";
        fs::create_directories(contents / system.moduleFolder);
        fs::create_directories(contents / "Resources");
        fs::copy_file(module, contents / system.moduleFolder / info.executable);
        WriteText(contents / "Info.plist", InfoPlist(info));
        WriteText(contents / "PkgInfo", s_PackageInfo);
        const Bytes package = ToPackage(packing.files);
        WriteFileAtomically(contents / "Resources/blob.dat", std::as_bytes(std::span(package)));
        fs::remove_all(bundle);
        staged.commit();
        return {bundle, info};
    } catch (const fs::filesystem_error& error) {
        throw EffectFailure(parts.bundle, error.code().message() + " (" + error.path1().string() + ")");
    }
}

} // namespace fxhost
