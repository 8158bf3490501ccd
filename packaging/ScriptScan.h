#pragma once

#include <string>
#include <vector>

namespace fxhost {

// A file that a script names in a string literal.
struct FileReference {
    std::string file; // "blur.frag" for a shader, otherwise the name as written
    int line = 0;     // in the script, from 1
};

// Finds the shader files and images that a script loads by a literal name: SV_initShader("name") without a
// source text, and SV_initTexture("name"), in either spelling. Comments are ignored. Names that the script
// computes at run time are not found.
std::vector<FileReference> FindFileReferences(const std::string& script);

// The line of the call that creates the shader of this literal name from a source text; 0 when there is none.
int LineOfInlineShader(const std::string& script, const std::string& name);

// The line of the first string literal with exactly this content, and of the first occurrence of a word.
// Occurrences in comments count only when there is no other. 0 when there is none.
int LineOfString(const std::string& script, const std::string& content);
int LineOfWord(const std::string& script, const std::string& word);

// True when a string literal equals the name of a uniform, except where the script declares a parameter.
bool NamesUniform(const std::string& script, const std::string& name);

// Replaces the characters inside string literals by blanks, in a script without comments.
std::string WithoutStrings(const std::string& script);

// Replaces comments by blanks, keeping line breaks and strings.
std::string WithoutComments(const std::string& script);

} // namespace fxhost
