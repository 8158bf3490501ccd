#include "platform/CoreFoundation.h"

#include <atomic>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace {

// The base of all objects, so that CFRelease can release any of them.
struct CountedObject {
    mutable std::atomic<int> references = 1;

    CountedObject() = default;
    CountedObject(const CountedObject&) = delete;
    CountedObject& operator=(const CountedObject&) = delete;
    virtual ~CountedObject() = default;
};

std::string WithoutTrailingSlash(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

} // namespace

struct UrlRecord : CountedObject {
    explicit UrlRecord(std::string text) : path(std::move(text)) {}
    const std::string path;
};

struct BundleRecord : CountedObject {
    explicit BundleRecord(std::string text) : folder(std::move(text)) {}
    const std::string folder;
};

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex length,
                                                 Boolean /*isDirectory*/) {
    if (!path || length <= 0)
        return nullptr;
    return new UrlRecord(
        WithoutTrailingSlash({reinterpret_cast<const char*>(path), static_cast<size_t>(length)}));
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean /*resolveAgainstBase*/, UInt8* buffer,
                                         CFIndex size) {
    if (!url || !buffer || size <= 0 || url->path.size() >= static_cast<size_t>(size))
        return 0;
    std::memcpy(buffer, url->path.c_str(), url->path.size() + 1);
    return 1;
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef folder) {
    std::error_code ignored;
    if (!folder || !std::filesystem::is_directory(folder->path, ignored))
        return nullptr;
    return new BundleRecord(folder->path);
}

CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle) {
    return bundle ? new UrlRecord(WithoutTrailingSlash(bundle->folder + "/Contents/Resources")) : nullptr;
}

CFTypeRef CFRetain(CFTypeRef object) {
    static_cast<const CountedObject*>(object)->references.fetch_add(1);
    return object;
}

void CFRelease(CFTypeRef object) {
    const auto* counted = static_cast<const CountedObject*>(object);
    if (counted->references.fetch_sub(1) == 1)
        delete counted;
}
