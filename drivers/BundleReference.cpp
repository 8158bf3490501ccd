#include "drivers/BundleReference.h"

#include "platform/CoreFoundation.h"

namespace fxhost {

std::shared_ptr<void> BundleAt(const std::string& path) {
    const auto* bytes = reinterpret_cast<const UInt8*>(path.data());
    CFURLRef url = CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault, bytes,
                                                           static_cast<CFIndex>(path.size()), true);
    const CFBundleRef bundle = url ? CFBundleCreate(kCFAllocatorDefault, url) : nullptr;
    if (url)
        CFRelease(url);
    if (!bundle)
        return nullptr;
    return {bundle, [](void* reference) { CFRelease(reference); }};
}

} // namespace fxhost
