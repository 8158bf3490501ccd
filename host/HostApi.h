#pragma once

// The headers of the host API that the whole adapter needs. AEConfig.h selects the platform and comes first,
// because no other published header includes it.
#include "AEConfig.h"

#include "AE_Effect.h"
#include "AE_EffectCB.h"

// The published headers up to 25.5 give the members these names; later ones provide the macros themselves.
#ifndef PF_DEF_NAME
#define PF_DEF_NAME name
#define PF_DEF_NAMEPTR nameptr
#define PF_DEF_NAMESPTR namesptr
#endif
