#pragma once

#include <string>
#include <vector>

struct zip;

// The effect package "blob.dat": a flat zip archive, scrambled as a whole. Once open it serves every file
// of the effect; there is no way back to loose files.
class BlobReader {
public:
    // The one reader of the process, made on first use.
    static BlobReader& Instance();

    virtual ~BlobReader();
    BlobReader(const BlobReader&) = delete;
    BlobReader& operator=(const BlobReader&) = delete;

    // Looks for "blob.dat" in the resources directory of the bundle `module` (a CFBundleRef), or, when that
    // is null, in <path>/Contents/Resources, with `path` a zero-terminated narrow path. When the package
    // opens, Utils reads from it; when it is missing or damaged, Utils goes on reading loose files.
    void init(void* module, void* path);

    // An entry by its base name, compared without regard to ASCII case. The text ends at the first zero byte.
    // Missing or damaged entries are empty.
    static std::string ReadWholeTextFile(const std::wstring& name);
    static std::vector<unsigned char> ReadWholeFile(const std::wstring& name);

private:
    BlobReader() = default;
    void Close();
    bool Open(std::size_t length);
    std::vector<unsigned char> Extract(const std::wstring& name) const;

    std::vector<unsigned char> m_Package; // the archive reads from it in place
    zip* m_Archive = nullptr;
};
