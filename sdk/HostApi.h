#pragma once

// The headers of the host API that every command needs, in an order in which the published ones compile,
// which include hardly anything themselves. AEConfig.h selects the platform, so it comes first.
// Angle brackets, because the vendor's headers may take the place of those in this folder.
#include <AEConfig.h>

#include <A.h>
#include <AE_EffectPixelFormat.h>
#include <SPTypes.h>

#include <SPBasic.h>

#include <AE_Effect.h>
#include <AE_EffectCB.h>

// The published headers up to 25.5 give the members these names; later ones provide the macros themselves.
#ifndef PF_DEF_NAME
#define PF_DEF_NAME name
#define PF_DEF_NAMEPTR nameptr
#define PF_DEF_NAMESPTR namesptr
#endif
