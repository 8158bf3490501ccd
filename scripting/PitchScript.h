#pragma once

#include <string>

// Preprocesses the text of fx.js into a program that the interpreter can run. It prepends the prelude
// (SV_Type, SV_GL, SV_ParamFlags), appends the call of setup(), removes the first "import S;", rewrites
// S.V.name to SV_name, and appends empty functions for the optional callbacks that the text does not mention.
std::string PitchScript(const std::string& source);

// Number of lines that the prelude adds before the author's first line.
int ScriptPreludeLines();

// Converts a line of the preprocessed text to the line in fx.js; 0 for lines that the author did not write.
int AuthorLine(int line);
