#pragma once

#include "AE_Effect.h"

// Older kits call these members by name; newer ones hide them behind macros.
#ifndef PF_DEF_NAME
#define PF_DEF_NAME name
#define PF_DEF_NAMEPTR nameptr
#define PF_DEF_NAMESPTR namesptr
#endif
