#pragma once

#include <string>
#include <vector>

namespace fxhost {

// A file that a script names as a plain string.
struct FileReference {
    std::string file; // "blur.frag" for a shader, else the name as written
    int line = 0;     // in the script, from 1
};

// The shader files and images that a script asks for with a literal name: SV_initShader("name") without a
// source text, and SV_initTexture("name"), in either spelling. Comments do not count; names that are put
// together at run time are not seen.
std::vector<FileReference> FindFileReferences(const std::string& script);

// The line of the call that makes the shader of this name from a text; 0 when there is none with a literal
// name.
int LineOfInlineShader(const std::string& script, const std::string& name);

// The line of the first string literal with exactly this content, and of the first mention of a word, one in
// a comment only where there is no other; 0 when there is none.
int LineOfString(const std::string& script, const std::string& content);
int LineOfWord(const std::string& script, const std::string& word);

// Whether the script names a uniform in a string, other than as the name of a parameter that it declares.
bool NamesUniform(const std::string& script, const std::string& name);

// The script with comments blanked out and line breaks kept; strings stay.
std::string WithoutComments(const std::string& script);

} // namespace fxhost
