#pragma once

#include <string>

#include "tests/fuzz/FuzzInput.h"

// Decodes input into the text of an fx.js: setup, preRender, draw and updateUIFlags, each a sequence of calls
// of the native functions. Most arguments are of the right kind; the others are handles of another type or of
// released objects, numbers of every interesting class, arrays that are too short, texts with a NUL, and
// objects whose conversion calls native functions again. The text has no loops, so that each callback ends.
std::string GenerateScript(FuzzInput& input);
