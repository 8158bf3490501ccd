#include "host/EntryPoint.h"

// Nothing else in the module names the entry point, and a library's unused parts are left out of it.
[[gnu::used]] static const auto s_KeepEntryPoint = &EntryPointFunc;
