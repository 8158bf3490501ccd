// Package bytes: the plain archive, and the scrambled package that the engine reads.
#include <exception>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "packaging/Archive.h"
#include "tests/fuzz/FuzzInput.h"
#include "utils/BlobReader.h"
#include "utils/BlobScrambling.h"
#include "utils/Utils.h"

namespace {

// A bundle of this process, whose package is replaced by each input.
std::string BundleFolder() {
    static const std::string s_Folder =
        (std::filesystem::temp_directory_path() / ("fuzz_package_" + std::to_string(getpid()))).string();
    std::filesystem::create_directories(s_Folder + "/Contents/Resources");
    return s_Folder;
}

void ReadThroughEngine(const std::vector<unsigned char>& package) {
    const std::string folder = BundleFolder();
    std::ofstream(folder + "/Contents/Resources/blob.dat", std::ios::binary)
        .write(reinterpret_cast<const char*>(package.data()), static_cast<std::streamsize>(package.size()));
    BlobReader::Instance().init(nullptr, const_cast<char*>(folder.c_str()));
    for (const wchar_t* const name :
         {L"fx.js", L"CONFIG.XML", L"a.png", L"", L"shaders/b.glsl", L"\x1F600"}) {
        Utils::ReadWholeTextFile(name);
        Utils::ReadWholeFile(name);
    }
    Utils::ReadWholeTextFileCallback = nullptr;
    Utils::ReadWholeFileCallback = nullptr;
    std::filesystem::remove_all(folder);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::vector<unsigned char> archive(bytes, bytes + size);
    std::vector<unsigned char> package = BlobScrambling::Scramble(archive);
    ReadThroughEngine(package);
    ReadThroughEngine(archive);
    package.resize(size + BlobScrambling::Padding);
    BlobScrambling::Unscramble(package, size);
    package.resize(size);
    Require(package == archive, "unscrambling restores what was scrambled");
    try {
        const fxhost::FileMap files = fxhost::ReadZip(archive);
        Require(fxhost::ReadZip(fxhost::WriteZip(files)) == files, "a written archive reads back");
    } catch (const std::exception&) { // the bytes are not an archive
    }
    return 0;
}
