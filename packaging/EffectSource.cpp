#include "packaging/EffectSource.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "packaging/Package.h"
#include "toolkit/Errors.h"
#include "utils/Utils.h"

namespace fxhost {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t s_PackageSuffix[] =
    L"//blob.dat"; // end of the path under which the engine opens the package
constexpr char s_BundlePackage[] = "Contents/Resources/blob.dat";

// State for the reading callbacks of the engine, which are plain functions.
struct Selected {
    fs::path folder;
    Bytes package;
    std::vector<std::string> missing;
    EffectSource::ScriptTransform transform; // of the script of a folder
};
Selected s_Selected;

// Paths are bytes. Where they are not UTF-8, U+DC80 to U+DCFF stand for single bytes, which Utils::ToNarrow
// restores.
std::wstring WidePath(const std::string& path) {
    std::wstring wide = Utils::ToWide(path);
    if (Utils::ToNarrow(wide) == path)
        return wide;
    wide.clear();
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        wide += static_cast<wchar_t>(byte < 0x80 ? byte : 0xDC00 + byte);
    }
    return wide;
}

std::wstring PathInFolder(const std::wstring& name) {
    if (name.ends_with(s_PackageSuffix))
        return L""; // a folder: there is no package to open
    const std::string narrow = Utils::ToNarrow(name);
    const fs::path path = s_Selected.folder / fs::path(narrow).relative_path();
    std::error_code ignored;
    auto& missing = s_Selected.missing;
    const std::string file = fs::path(narrow).relative_path().string();
    if (!fs::is_regular_file(path, ignored) &&
        std::find(missing.begin(), missing.end(), file) == missing.end())
        missing.push_back(file);
    return WidePath(path.string());
}

// Reads a file of a folder as the engine would, and transforms the script.
std::string TransformedText(const std::wstring& name) {
    Utils::ReadWholeTextFileCallback = nullptr;
    const std::string text = Utils::ReadWholeTextFile(name);
    Utils::ReadWholeTextFileCallback = TransformedText;
    return name == L"fx.js" ? s_Selected.transform(text) : text;
}

// Returns the package to the reader that opens it; that reader then returns all files.
Bytes PackageBytes(const std::wstring& name) {
    return name.ends_with(s_PackageSuffix) ? s_Selected.package : Bytes();
}

} // namespace

std::string BaseName(const std::string& name) {
    return name.substr(name.rfind('/') + 1);
}

std::string FoldCase(std::string name) {
    for (char& c : name)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return name;
}

std::optional<Bytes> ReadFileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file || !fs::is_regular_file(path))
        return std::nullopt;
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

EffectSource EffectSource::Open(const std::string& path) {
    EffectSource source;
    source.m_Path = path;
    while (source.m_Path.size() > 1 && source.m_Path.ends_with('/'))
        source.m_Path.pop_back();
    if (!fs::exists(path))
        throw WrongUse(path + ": no such effect; a folder with fx.js or a package file was expected");

    std::string file = path;
    if (fs::is_directory(path)) {
        if (const fs::path inside = fs::path(path) / s_BundlePackage; fs::is_regular_file(inside))
            file = inside.string();
        else if (!fs::is_regular_file(fs::path(path) / "fx.js"))
            throw WrongUse(path + ": the folder holds no fx.js, so it is no effect");
    }
    if (!fs::is_directory(file)) {
        Package package = ReadPackage(file);
        source.m_Files = std::move(package.files);
        source.m_Scrambled = std::move(package.scrambled);
        source.m_IsPackage = true;
        if (!source.Has("fx.js"))
            throw WrongUse(file + ": the package holds no fx.js, so it is no effect");
    }
    if (!source.Has("config.xml"))
        throw EffectFailure(source.DisplayPath("config.xml"), "not found; every effect needs one");
    return source;
}

std::string EffectSource::DisplayPath(const std::string& file) const {
    return (fs::path(m_Path) / fs::path(file).relative_path()).string();
}

std::optional<std::string> EffectSource::ReadText(const std::string& name) const {
    if (!m_IsPackage) {
        const auto bytes = ReadFileBytes(DisplayPath(name));
        return bytes ? std::optional(std::string(bytes->begin(), bytes->end())) : std::nullopt;
    }
    const std::string wanted = FoldCase(BaseName(name));
    for (const auto& [entry, bytes] : m_Files)
        if (FoldCase(entry) == wanted)
            return std::string(bytes.begin(), bytes.end());
    return std::nullopt;
}

bool EffectSource::Has(const std::string& name) const {
    return ReadText(name).has_value();
}

// The reader of packages replaces the callback for texts, so a package with another script is made.
void EffectSource::Select(const ScriptTransform& transform) const {
    s_Selected = {fs::absolute(m_Path), m_Scrambled, {}, transform};
    if (!m_IsPackage) {
        Utils::ProcessPath = PathInFolder;
        Utils::ReadWholeTextFileCallback = transform ? TransformedText : nullptr;
        return;
    }
    Utils::ReadWholeFileCallback = PackageBytes;
    FileMap files = m_Files;
    for (auto& [name, bytes] : files)
        if (transform && FoldCase(name) == "fx.js") {
            const std::string script = transform(std::string(bytes.begin(), bytes.end()));
            bytes.assign(script.begin(), script.end());
        }
    if (transform)
        s_Selected.package = ToPackage(files);
}

std::vector<std::string> EffectSource::MissingFiles() {
    return s_Selected.missing;
}

} // namespace fxhost
