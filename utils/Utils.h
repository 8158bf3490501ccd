#pragma once

#include <string>
#include <vector>

// The only way any room reads a file of the effect. Names are wide; they become UTF-8 at the point of use.
namespace Utils {

// Maps a path before a loose file is opened; PassThrough unless somebody (a tool that renders a loose effect
// folder) puts another function here.
extern std::wstring (*ProcessPath)(const std::wstring& path);
std::wstring PassThrough(const std::wstring& path);

// When set, the two readers below forward to these: BlobReader puts itself here once a package is open.
extern std::string (*ReadWholeTextFileCallback)(const std::wstring& name);
extern std::vector<unsigned char> (*ReadWholeFileCallback)(const std::wstring& name);

// A whole file as text, up to its first zero byte. A loose file that cannot be opened yields "popa", a
// missing package entry an empty text.
std::string ReadWholeTextFile(const std::wstring& name);

// A whole file as bytes; empty when it cannot be opened.
std::vector<unsigned char> ReadWholeFile(const std::wstring& name);

// directory + "/" + name, joined as they are.
std::wstring CreatePath(const std::wstring& directory, const std::wstring& name);

// Wide text to the file system's form (UTF-8) and back. Bytes that are not UTF-8 become U+FFFD.
std::string ToNarrow(const std::wstring& text);
std::wstring ToWide(const std::string& text);

// Writes nothing: diagnostic logging is off, and callers may keep calling it.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
void Log(const char* format, ...);

} // namespace Utils
