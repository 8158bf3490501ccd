#pragma once

/* gl.h declares the extensions that are used. */
#include <OpenGL/gl.h>
