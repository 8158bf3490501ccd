#pragma once

#include <string>

// Turns the text of fx.js into a runnable program: puts the prelude (SV_Type, SV_GL, SV_ParamFlags) in front,
// calls setup() at the end, drops the first "import S;", spells S.V.name as SV_name, and adds empty functions
// for the optional callbacks that the text does not mention.
std::string PitchScript(const std::string& source);

// How many lines the prelude puts in front of the author's first line.
int ScriptPreludeLines();
