#pragma once

#include <string>
#include <vector>

// The only functions that read files of an effect. Names are wide; they are converted to UTF-8 when a file is
// opened.
namespace Utils {

// Maps a path before a loose file is opened. It is PassThrough unless a tool that renders an effect folder
// sets it.
extern std::wstring (*ProcessPath)(const std::wstring& path);
std::wstring PassThrough(const std::wstring& path);

// When set, the two functions below forward to these. BlobReader sets them when it has opened a package.
extern std::string (*ReadWholeTextFileCallback)(const std::wstring& name);
extern std::vector<unsigned char> (*ReadWholeFileCallback)(const std::wstring& name);

// Returns a whole file as text, up to its first zero byte. The result is "popa" for a loose file that cannot
// be opened, and empty for a missing package entry.
std::string ReadWholeTextFile(const std::wstring& name);

// Returns the bytes of a whole file; empty when it cannot be opened.
std::vector<unsigned char> ReadWholeFile(const std::wstring& name);

// Returns directory + "/" + name without changing either.
std::wstring CreatePath(const std::wstring& directory, const std::wstring& name);

// Convert wide text to the form of the file system (UTF-8) and back. Bytes that are not UTF-8 become U+FFFD.
std::string ToNarrow(const std::wstring& text);
std::wstring ToWide(const std::string& text);

// Writes nothing, because diagnostic logging is switched off.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
void Log(const char* format, ...);

} // namespace Utils
