#pragma once

// The CoreFoundation functions that find a plug-in's resources. On macOS they are the system's. Elsewhere
// this folder implements them for bundles, which are folders of the same layout.
//
// Ownership: the caller owns the result of a function with Create or Copy in its name, and releases it with
// CFRelease, which must not be called with null. Objects are immutable, so any thread may read them.

#ifdef __APPLE__

#include <CoreFoundation/CoreFoundation.h>

#else

using CFTypeRef = const void*;
using CFAllocatorRef = const void*;
using CFBundleRef = struct BundleRecord*;
using CFURLRef = const struct UrlRecord*;
using CFIndex = long;
using Boolean = unsigned char;
using UInt8 = unsigned char;

// NOLINTNEXTLINE(readability-identifier-naming): as in CoreFoundation
constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;

// `path` is `length` bytes of UTF-8 without a terminating zero. Returns null for an empty path.
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex length,
                                                 Boolean isDirectory);
// Writes the path with a terminating zero. Returns false when it does not fit into `size` bytes. The path is
// as it was given at creation; it is not made absolute.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex size);

// Returns the bundle in a folder; null when the folder does not exist.
CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef folder);
// Returns <bundle>/Contents/Resources, which need not exist.
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);

#endif
