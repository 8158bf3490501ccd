#pragma once

#include <stdint.h>

typedef int32_t SPErr;
typedef int32_t SPInt32;
#if defined(_WIN32)
typedef int32_t SPBoolean;
#else
typedef uint8_t SPBoolean;
#endif
