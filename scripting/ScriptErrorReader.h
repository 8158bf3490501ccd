#pragma once

#include <duktape.h>

#include "scripting/Scripting.h"

// Describes the error value on top of the interpreter's stack with the author's file name and line numbers.
// `text` is what was evaluated: the whole preprocessed script or the text of a callback. The stack is
// unchanged afterwards.
ScriptError ReadScriptError(duk_context* context, const char* text);
