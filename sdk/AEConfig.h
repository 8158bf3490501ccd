#pragma once

// Which system this is compiled for. LP64 Linux has the layout of macOS.
#if defined(_WIN32)
#define AE_OS_WIN
#elif defined(__APPLE__)
#define AE_OS_MAC
#endif
