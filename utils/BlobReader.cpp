#include "utils/BlobReader.h"

#include <memory>
#include <zip.h>

#include "platform/CoreFoundation.h"
#include "utils/BlobScrambling.h"
#include "utils/Utils.h"

namespace {

constexpr std::size_t s_PathCapacity = 1024;

std::string ResourcesDirectory(void* module, const void* path) {
    if (!module)
        return path ? std::string(static_cast<const char*>(path)) + "/Contents/Resources" : std::string();
    const CFURLRef url = CFBundleCopyResourcesDirectoryURL(static_cast<CFBundleRef>(module));
    if (!url)
        return {};
    unsigned char buffer[s_PathCapacity] = {};
    const bool known = CFURLGetFileSystemRepresentation(url, true, buffer, sizeof buffer);
    CFRelease(url);
    return known ? reinterpret_cast<const char*>(buffer) : std::string();
}

// The readers that were set before a package was opened.
std::string (*s_TextReaderBefore)(const std::wstring&) = nullptr;
std::vector<unsigned char> (*s_FileReaderBefore)(const std::wstring&) = nullptr;

struct EntryCloser {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

} // namespace

BlobReader& BlobReader::Instance() {
    static BlobReader reader;
    return reader;
}

BlobReader::~BlobReader() {
    Close();
}

void BlobReader::Close() {
    if (m_Archive)
        zip_discard(m_Archive);
    m_Archive = nullptr;
}

// Lets Utils read as before the package was opened.
void BlobReader::RestoreReaders() {
    if (Utils::ReadWholeFileCallback != &BlobReader::ReadWholeFile)
        return;
    Utils::ReadWholeTextFileCallback = s_TextReaderBefore;
    Utils::ReadWholeFileCallback = s_FileReaderBefore;
}

void BlobReader::init(void* module, void* path) {
    RestoreReaders();
    const std::wstring directory = Utils::ToWide(ResourcesDirectory(module, path));
    std::vector<unsigned char> bytes = Utils::ReadWholeFile(Utils::CreatePath(directory, L"/blob.dat"));
    Close();
    m_Package = std::move(bytes);
    const std::size_t length = m_Package.size();
    m_Package.resize(length + BlobScrambling::Padding);
    BlobScrambling::Unscramble(m_Package, length);
    if (!Open(length))
        return;
    s_TextReaderBefore = Utils::ReadWholeTextFileCallback;
    s_FileReaderBefore = Utils::ReadWholeFileCallback;
    Utils::ReadWholeTextFileCallback = &BlobReader::ReadWholeTextFile;
    Utils::ReadWholeFileCallback = &BlobReader::ReadWholeFile;
}

bool BlobReader::Open(std::size_t length) {
    if (length == 0) // libzip would open it as an empty archive
        return false;
    zip_source_t* const source = zip_source_buffer_create(m_Package.data(), length, 0, nullptr);
    if (!source)
        return false;
    m_Archive = zip_open_from_source(source, ZIP_RDONLY, nullptr);
    if (!m_Archive)
        zip_source_free(source);
    return m_Archive != nullptr;
}

std::vector<unsigned char> BlobReader::Extract(const std::wstring& name) const {
    const std::string path = Utils::ToNarrow(name);
    const std::string base = path.substr(path.rfind('/') + 1); // npos + 1 is 0
    const zip_int64_t index = m_Archive ? zip_name_locate(m_Archive, base.c_str(), ZIP_FL_NOCASE) : -1;
    if (index < 0)
        return {};
    const std::unique_ptr<zip_file_t, EntryCloser> entry(
        zip_fopen_index(m_Archive, static_cast<zip_uint64_t>(index), 0));
    if (!entry)
        return {};
    // Reads block by block, because the size in a damaged archive may be wrong.
    std::vector<unsigned char> bytes;
    unsigned char block[65536];
    zip_int64_t got = 0;
    while ((got = zip_fread(entry.get(), block, sizeof block)) > 0)
        bytes.insert(bytes.end(), block, block + got);
    return got == 0 ? bytes : std::vector<unsigned char>(); // fails when the checksum is wrong
}

std::vector<unsigned char> BlobReader::ReadWholeFile(const std::wstring& name) {
    return Instance().Extract(name);
}

std::string BlobReader::ReadWholeTextFile(const std::wstring& name) {
    std::vector<unsigned char> bytes = Instance().Extract(name);
    bytes.push_back(0);
    return reinterpret_cast<const char*>(bytes.data());
}
