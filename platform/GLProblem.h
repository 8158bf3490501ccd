#pragma once

#include <string>

// Returns a message for users that explains why CGLChoosePixelFormat or CGLCreateContext last failed, and
// which packages to install if that helps. Empty when the last attempt succeeded or none was made. May be
// called from any thread.
std::string PlatformGLProblem();
