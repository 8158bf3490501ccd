#pragma once

struct duk_hthread;

// Installs print() and console.log(), console.info(), console.warn() and console.error(), which are the same
// function. They pass their arguments, as text with blanks in between, to Scripting::PrintCallback, and do
// nothing while that is null. Objects and arrays are shown as JSON.
void RegisterConsole(duk_hthread* context);
