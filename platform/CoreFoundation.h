#pragma once

// The CoreFoundation calls that find a plug-in's resources. On macOS they are the system's; elsewhere this
// folder supplies them for a bundle folder of the same layout.
//
// Ownership: what a function with Create or Copy in its name returns is the caller's, who gives it back
// with CFRelease; null is never released. Objects do not change, so any thread may read them.

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

constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;

// path: length bytes of UTF-8, no terminating zero needed. Null for an empty path.
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex length,
                                                 Boolean isDirectory);
// Writes the zero-terminated path; false when it does not fit into size bytes. The path is the one given at
// creation, never made absolute.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex size);

// The bundle in the folder; null when there is no such folder.
CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef folder);
// <bundle>/Contents/Resources, whether or not it exists.
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);

#endif
