#include "packaging/Package.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "packaging/EffectSource.h"
#include "packaging/ScriptScan.h"
#include "toolkit/Errors.h"
#include "utils/BlobScrambling.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesToPack(const std::string& folder) {
    std::vector<fs::path> paths;
    for (auto at = fs::recursive_directory_iterator(folder); at != fs::recursive_directory_iterator(); ++at) {
        const std::string name = at->path().filename().string();
        const bool hidden = name.starts_with('.');
        if (hidden && at->is_directory())
            at.disable_recursion_pending();
        if (!hidden && at->is_regular_file() && FoldCase(name) != "blob.dat")
            paths.push_back(at->path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

Bytes Unscrambled(const Bytes& package) {
    Bytes plain = package;
    plain.resize(package.size() + BlobScrambling::Padding);
    BlobScrambling::Unscramble(plain, package.size());
    plain.resize(package.size());
    return plain;
}

} // namespace

PackageContents CollectPackage(const std::string& folder) {
    const EffectSource source = EffectSource::Open(folder);
    if (source.IsPackage())
        throw WrongUse(folder + ": is packed already; an effect folder was expected");
    PackageContents packing;
    std::map<std::string, std::string> first; // path of the first file with each case-folded base name
    for (const fs::path& path : FilesToPack(folder)) {
        const std::string name = path.filename().string();
        const auto [other, isNew] = first.emplace(FoldCase(name), path.string());
        auto bytes = ReadFileBytes(path.string());
        if (!isNew)
            packing.findings.push_back({path.string(),
                                        0,
                                        Severity::Error,
                                        "a package is flat, and \"" + other->second + "\" has the same name",
                                        {}});
        else if (!bytes)
            packing.findings.push_back({path.string(), 0, Severity::Error, "cannot be read", {}});
        else
            packing.files[name] = std::move(*bytes);
    }
    for (const auto& reference : FindFileReferences(source.ReadText("fx.js").value_or("")))
        if (!first.count(FoldCase(BaseName(reference.file))))
            packing.findings.push_back({source.DisplayPath("fx.js"),
                                        reference.line,
                                        Severity::Error,
                                        "the effect has no file \"" + reference.file + "\"",
                                        {}});
    return packing;
}

Bytes ToPackage(const FileMap& files) {
    return BlobScrambling::Scramble(WriteZip(files));
}

Package ReadPackage(const std::string& path) {
    const auto bytes = ReadFileBytes(path);
    if (!bytes)
        throw WrongUse(path + ": there is no such package file");
    try {
        return {ReadZip(*bytes), BlobScrambling::Scramble(*bytes)};
    } catch (const std::exception&) { // not a plain archive: report the reason of the second attempt
    }
    try {
        return {ReadZip(Unscrambled(*bytes)), *bytes};
    } catch (const std::exception& error) {
        throw WrongUse(path + ": neither a zip archive nor a scrambled one (" + error.what() +
                       "); a package made by `fxhost pack` was expected");
    }
}

} // namespace fxhost
