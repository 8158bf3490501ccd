#pragma once

#include <stddef.h>

#include "SPErrorCodes.h"
#include "SPTypes.h"

#define kSPBasicSuite "SP Basic Suite"
#define kSPBasicSuiteVersion 4

// Through which a plug-in borrows every other table. Acquires are counted: one release each, with the same
// name and number.
typedef struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, int32_t version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, int32_t version);
    SPBoolean (*IsEqual)(const char* token1, const char* token2);
    SPErr (*AllocateBlock)(size_t size, void** block);
    SPErr (*FreeBlock)(void* block);
    SPErr (*ReallocateBlock)(void* block, size_t newSize, void** newblock);
    SPErr (*Undefined)(void);
} SPBasicSuite;
