#pragma once

/* The functions of CoreFoundation that this project uses, written from their public documentation. On a Mac
   the system's own header takes the place of this one. */

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef signed long CFIndex;
typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFBundle* CFBundleRef;

extern const CFAllocatorRef kCFAllocatorDefault;

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* buffer,
                                                 CFIndex length, Boolean isDirectory);
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex size);
CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef url);
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);
CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);

#ifdef __cplusplus
}
#endif
