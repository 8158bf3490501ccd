#include "host/EntryPoint.h"

// The linker would drop the entry point from the static library, because nothing else in the module refers to
// it.
[[gnu::used]] static const auto s_KeepEntryPoint = &EntryPointFunc;
