#pragma once

#include <string>

// Why CGLChoosePixelFormat or CGLCreateContext last failed, in words for the user, with the packages to
// install where that helps. Empty when the last attempt succeeded or none was made. Any thread.
std::string PlatformGLProblem();
