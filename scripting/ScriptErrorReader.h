#pragma once

#include <duktape.h>

#include "scripting/Scripting.h"

// The error value on top of the stack, told in the author's terms. `text` is what was evaluated: the whole
// preprocessed script, or one of the short callback texts. Leaves the stack as it was.
ScriptError ReadScriptError(duk_context* context, const char* text);
