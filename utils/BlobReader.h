#pragma once

#include <string>
#include <vector>

struct zip;

// Reads the effect package "blob.dat", a zip archive without folders that is scrambled as a whole. Once a
// package is open, every file of the effect is read from it, until init opens another effect. Threads: init
// is called during set-up; entries are read inside the engine's frame lock.
class BlobReader {
public:
    // Returns the only reader of the process, which is created on first use.
    static BlobReader& Instance();

    virtual ~BlobReader();
    BlobReader(const BlobReader&) = delete;
    BlobReader& operator=(const BlobReader&) = delete;

    // Opens "blob.dat" in the resources directory of the bundle `module` (a CFBundleRef) or, when that is
    // null, in <path>/Contents/Resources. `path` is zero-terminated UTF-8. When the package is missing or
    // damaged, Utils continues to read loose files.
    void init(void* module, void* path);

    // Return an entry by its base name, compared without regard to ASCII case. Text ends at the first zero
    // byte. Missing and damaged entries are empty.
    static std::string ReadWholeTextFile(const std::wstring& name);
    static std::vector<unsigned char> ReadWholeFile(const std::wstring& name);

private:
    BlobReader() = default;
    static void RestoreReaders();
    void Close();
    bool Open(std::size_t length);
    std::vector<unsigned char> Extract(const std::wstring& name) const;

    std::vector<unsigned char> m_Package; // m_Archive reads from this memory
    zip* m_Archive = nullptr;
};
