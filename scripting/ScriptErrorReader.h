#pragma once

#include <duktape.h>

#include "scripting/Scripting.h"

// Replaces the error value on top of the interpreter's stack by a description of three values, for
// ReadScriptError.
void DescribeScriptError(duk_context* context);

// Reads the description on top of the interpreter's stack, with the author's file name and line numbers, and
// cannot fail in the interpreter. `text` is what was evaluated: the whole preprocessed script or the text of
// a callback. The stack is unchanged afterwards.
ScriptError ReadScriptError(duk_context* context, const char* text);

// Returns "preRender", "draw" or "updateUIFlags" for the text of a callback, otherwise "fx.js".
std::string EvaluatedName(const char* text);

// Returns the author's line that called the running native function, from 1; 0 when there is none.
int CallingLine(duk_context* context);
